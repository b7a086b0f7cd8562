#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QXmlStreamReader>
#include <map>

#include "drivers/brands/Drivers.h"
#include "parameter/CDlgSetupPageParameters.h"
#include "setup/At.h"
#include "support/HostFixture.h"
#include "support/PromptQueue.h"

namespace {

using Shown = std::map<QString, QString>; ///< what a control shows, by its name

/// A driver whose abilities a test tells; none for a request that fails.
template <class Driver>
class CServed : public Driver
{
public:
    explicit CServed(const QString& sAbilities) : vm_sAbilities(sAbilities) {}
    bool m_F_b_GetSupport(CXmlObj* pSupport, int nTimeoutMs) override
    {
        EXPECT_EQ(nTimeoutMs, 60000);
        return !vm_sAbilities.isEmpty() && pSupport->m_F_b_LoadXML(vm_sAbilities);
    }

private:
    QString vm_sAbilities;
};

std::unique_ptr<CCamObj_Base> Serve(int nVendor, const QString& s)
{
    switch (nVendor) {
    case 0:
        return std::make_unique<CServed<CCamObj_AMTKV5>>(s);
    case 2:
        return std::make_unique<CServed<CCamObj_AMTKV6>>(s);
    case 4:
        return std::make_unique<CServed<CCamObj_ONVIF>>(s);
    case 6:
        return std::make_unique<CServed<CCamObj_ZAVIO>>(s);
    case 7:
        return std::make_unique<CServed<CCamObj_SMAX>>(s);
    case 8:
        return std::make_unique<CServed<CCamObj_FITI>>(s);
    case 9:
        return std::make_unique<CServed<CCamObj_PIXORD>>(s);
    default:
        return std::make_unique<CServed<CCamObj_DYNACOLOR>>(s);
    }
}

QString Items(const QComboBox& objList)
{
    QStringList arItems;
    bool bRange = objList.count() > 2;
    for (int i = 0; i < objList.count(); ++i) {
        arItems << objList.itemText(i);
        bRange = bRange && arItems[i] == QString::number(arItems[0].toInt() + i);
    }
    return bRange ? arItems.first() + ".." + arItems.last() : arItems.join('|');
}

/// The range that an edit's label tells.
QString Range(const QWidget& wndPage, const QWidget* pEdit)
{
    for (const QLabel* const pLabel : wndPage.findChildren<QLabel*>()) {
        if (pLabel->buddy() == pEdit)
            return pLabel->text().remove('&');
    }
    return "none";
}

Shown Read(const QWidget& wndPage)
{
    Shown mapShown;
    const auto Put = [&](const QWidget* p, const QString& s) {
        mapShown[p->objectName()] = (p->isEnabled() ? "" : "~") + s;
    };
    for (const QComboBox* const p : wndPage.findChildren<QComboBox*>())
        Put(p, '{' + Items(*p) + "} " + (p->currentIndex() < 0 ? "-" : p->currentText()));
    for (const QCheckBox* const p : wndPage.findChildren<QCheckBox*>())
        Put(p, p->isChecked() ? "on" : "off");
    for (const QLineEdit* const p : wndPage.findChildren<QLineEdit*>())
        Put(p, p->text() + " / " + Range(wndPage, p));
    return mapShown;
}

std::string Lines(const Shown& mapShown)
{
    QString sLines;
    for (const auto& [sName, sText] : mapShown)
        sLines += sName + ": " + sText + '\n';
    return sLines.toStdString();
}

/// "Name: text; Name: text" over what was shown before. "#" stands for the numbers 1 to 100, "Kbps" for the words
/// around a range, and a list without its content has that of before.
void Change(Shown& mapShown, const QString& sChanges)
{
    for (const QString& sChange : sChanges.split("; ", Qt::SkipEmptyParts)) {
        const QString sName = sChange.section(": ", 0, 0);
        QString sText = sChange.section(": ", 1).replace("{#}", "{1..100}");
        if (const auto nRange = sText.indexOf('['); nRange >= 0) {
            const QStringList arLimits = sText.mid(nRange + 1).chopped(1).split('~', Qt::SkipEmptyParts);
            sText = sText.left(nRange) + "/ Bitrate" +
                    (arLimits.isEmpty() ? "" : " (" + arLimits.join(" ~ ") + " Kbps)") + " : ";
        }
        QString& sShown = mapShown[sName];
        const auto nContent = sShown.indexOf('{');
        if (nContent >= 0 && !sText.contains('{'))
            sText.insert(sText.startsWith('~') ? 1 : 0,
                         sShown.mid(nContent, sShown.lastIndexOf('}') + 1 - nContent) + ' ');
        sShown = sText;
    }
}

/// A case of fixtures/cases.txt: what it doesn't tell is that of the brand's first one.
struct stDef_Case
{
    QString sName, sAbilities, sNode, sWrote;
    int nVendor = -1;
    Shown mapOpened;
    QList<std::pair<QString, QString>> arSteps;
};

/// "Key=value, Key=value" over attributes in their order.
QString Changed(const QString& sNode, const QString& sChanges)
{
    QStringList arNode = sNode.split(", ");
    for (const QString& sChange : sChanges.split(", ", Qt::SkipEmptyParts)) {
        const QString sHead = sChange.section('=', 0, 0) + '=';
        const auto it = std::find_if(arNode.begin(), arNode.end(), [&](const auto& s) { return s.startsWith(sHead); });
        if (it == arNode.end())
            arNode << sChange;
        else
            *it = sChange;
    }
    return arNode.join(", ");
}

QList<stDef_Case> Cases()
{
    QList<stDef_Case> arCases;
    QFile file(FIXTURE_FOLDER "/cases.txt");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    stDef_Case stFirst;
    for (int nLine = 1; !file.atEnd(); ++nLine) {
        const QString sLine = QString::fromUtf8(file.readLine()).trimmed();
        const QString sWord = sLine.section(' ', 0, 0), sRest = sLine.section(' ', 1);
        if (sLine.isEmpty() || sLine.startsWith('#'))
            continue;
        if (sWord == "brand" || sWord == "case") {
            if (!arCases.isEmpty() && stFirst.nVendor < 0)
                stFirst = arCases.last();
            arCases << (sWord == "brand" ? stDef_Case() : stFirst);
            if (sWord == "brand")
                stFirst = {};
            arCases.last().sName = QString("line %1: %2").arg(nLine).arg(sLine);
            arCases.last().arSteps.clear();
            if (sWord == "brand")
                arCases.last().nVendor = sRest.section(' ', 0, 0).toInt();
            continue;
        }
        stDef_Case& st = arCases.last();
        if (sWord == "can")
            st.sAbilities += sRest;
        else if (sWord == "swap") {
            EXPECT_TRUE(st.sAbilities.contains(sRest.section(" => ", 0, 0))) << sLine.toStdString();
            st.sAbilities.replace(sRest.section(" => ", 0, 0), sRest.section(" => ", 1));
        } else if (sWord == "node")
            st.sNode = sRest;
        else if (sWord == "with")
            st.sNode = Changed(st.sNode, sRest);
        else if (sWord == "opens")
            Change(st.mapOpened, sRest);
        else
            st.arSteps.append({sWord, sRest});
        if (sWord == "wrote")
            st.sWrote = sRest;
        else if (sWord == "writes")
            st.arSteps.last() = {"wrote", Changed(stFirst.sWrote, sRest)};
    }
    return arCases;
}

class ParameterPages : public HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(LANG_FOLDER));
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env));
        Nvr().m_F_b_InitLanguageXml(LANG_FOLDER "/lang_ENVR_eng.xml");
    }
    CWndNvrEmbedded& Nvr() { return *static_cast<CWndNvrEmbedded*>(vm_pNvr.get()); }

    void SetNode(const QString& sNode)
    {
        QString sXml;
        for (const QString& sAttribute : sNode.split(", "))
            sXml += sAttribute.section('=', 0, 0) + "='" + sAttribute.section('=', 1) + "' ";
        ASSERT_TRUE(Nvr().vm_xmlCamera.m_F_b_LoadXML("<root><Camera count='3'><Cam000 FPS='0'/><Cam001 " + sXml +
                                                     "/><Cam002 FPS='2'/></Camera></root>"));
    }
    /// The camera's node, in the order of its keys; the other cameras are as they were.
    std::string Node()
    {
        QXmlStreamReader xml(Nvr().vm_xmlCamera.m_F_s_GetXML());
        QStringList arAttributes;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            for (const QXmlStreamAttribute& attribute : xml.attributes()) {
                const QString s = attribute.name().toString() + '=' + attribute.value().toString();
                if (xml.name() == QStringLiteral("Cam001"))
                    arAttributes << s;
                else if (xml.name() != QStringLiteral("Camera"))
                    EXPECT_EQ(s, "FPS=" + xml.name().toString().right(1));
            }
        }
        return arAttributes.join(", ").toStdString();
    }

    void ShowParameter(CCamObj_Base& objCamera, const std::function<void(CPropertySheet&)>& fnAct)
    {
        objCamera.m_pNvr = vm_pNvr.get();
        objCamera.m_pEnv = &vm_env;
        objCamera.m_nCamIndex = 1;
        bool bCame = false;
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
            bCame = true;
            fnAct(dynamic_cast<CPropertySheet&>(dialog));
        });
        objCamera.m_S_ShowParameter(nullptr);
        EXPECT_TRUE(bCame);
    }
    static void Press(CPropertySheet& sheet, const char* pszButton)
    {
        QTest::mouseClick(sheet.findChild<QPushButton*>(pszButton), Qt::LeftButton);
    }

    static void Choose(QWidget* pList, const QString& sItem)
    {
        auto& objList = dynamic_cast<QComboBox&>(*pList);
        ASSERT_GE(objList.findText(sItem), 0) << sItem.toStdString();
        ASSERT_TRUE(objList.isEnabled());
        objList.setFocus();
        QTest::keyClick(&objList, Qt::Key_Down, Qt::AltModifier); // opens it
        ASSERT_TRUE(objList.view()->isVisible());
        objList.view()->setCurrentIndex(objList.model()->index(objList.findText(sItem), 0));
        QTest::keyClick(objList.view(), Qt::Key_Return);
    }

    void Step(CPropertySheet& sheet, Shown& mapShown, const QString& sWord, const QString& sRest)
    {
        const At at(sheet.m_F_ar_Pages().first());
        const QString sName = sRest.section(' ', 0, 0), sText = sRest.section(' ', 1);
        if (sWord == "choose")
            Choose(at.Find(sName), sText);
        else if (sWord == "click")
            at.Click(sName);
        else if (sWord == "type")
            at.Type(sName, sText);
        else if (sWord == "esc") {
            if (sRest == "asks")
                vm_objPrompts.ExpectToDestroy("Close without saving the changes?", "Parameter", "");
            QTest::keyClick(&sheet, Qt::Key_Escape);
            EXPECT_EQ(sheet.isVisible(), sRest == "asks");
        } else if (sWord == "ok") {
            Press(sheet, "OK");
            EXPECT_FALSE(sheet.isVisible());
        } else if (sWord == "refused") {
            vm_objPrompts.Expect(sText, "Error");
            Press(sheet, "OK");
            EXPECT_TRUE(sheet.isVisible());
            if (at.Find(sName)->isEnabled())
                EXPECT_EQ(sheet.focusWidget(), at.Find(sName));
        } else if (sWord == "wrote")
            EXPECT_EQ(Node(), sRest.toStdString());
        else if (sWord == "see")
            Change(mapShown, sRest);
        else
            ADD_FAILURE() << "no such step";
    }

    void Run(const stDef_Case& stCase)
    {
        SetNode(stCase.sNode);
        const auto pCamera = Serve(stCase.nVendor, "<root><Support " + stCase.sAbilities + "</Support></root>");
        ShowParameter(*pCamera, [&](CPropertySheet& sheet) {
            Shown mapShown = stCase.mapOpened;
            const auto& arSteps = stCase.arSteps;
            EXPECT_EQ(Lines(Read(*sheet.m_F_ar_Pages().first())), Lines(mapShown)) << "opened";
            EXPECT_EQ(Node(), stCase.sNode.toStdString());
            for (qsizetype i = 0; i < arSteps.size(); ++i) {
                SCOPED_TRACE(arSteps[i].first.toStdString() + ' ' + arSteps[i].second.toStdString());
                Step(sheet, mapShown, arSteps[i].first, arSteps[i].second);
                const QString sNext = i + 1 < arSteps.size() ? arSteps[i + 1].first : QString();
                if (sNext != "see") // a step without what is seen then changes nothing
                    EXPECT_EQ(Lines(Read(*sheet.m_F_ar_Pages().first())), Lines(mapShown));
            }
        });
    }

    PromptQueue vm_objPrompts;
    CNvrHolder vm_pNvr;
};

TEST_F(ParameterPages, ShowAndWriteWhatTheRulesSay)
{
    std::map<int, int> mapCases;
    for (const stDef_Case& stCase : Cases()) {
        SCOPED_TRACE(stCase.sName.toStdString());
        ++mapCases[stCase.nVendor];
        Run(stCase);
    }
    for (const stDef_Driver& stDriver : DriverList())
        EXPECT_GE(mapCases[stDriver.nVendorID], 6) << stDriver.nVendorID;
}

TEST_F(ParameterPages, OpenAlikeWithoutALanguageFile)
{
    vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env));
    for (stDef_Case stCase : Cases()) {
        SCOPED_TRACE(stCase.sName.toStdString());
        stCase.arSteps.clear();
        Run(stCase);
    }
}

TEST_F(ParameterPages, StandEmptyUntilCancelWithoutAReplyOrADocument)
{
    for (const stDef_Driver& stDriver : DriverList()) {
        SCOPED_TRACE(stDriver.nVendorID);
        for (const bool bReply : {false, true}) {
            SetNode("Name=N, FPS=9");
            if (bReply)
                Nvr().vm_xmlCamera.m_F_b_Close();
            const auto pCamera = Serve(stDriver.nVendorID, bReply ? "<root><Support/></root>" : "");
            ShowParameter(*pCamera, [&](CPropertySheet& sheet) {
                for (int i = 0; i < 2; ++i) {
                    for (const auto& [sName, sText] : Read(*sheet.m_F_ar_Pages().first()))
                        EXPECT_TRUE(sText.startsWith("~{} -") || sText.startsWith("~off") || sText.startsWith("~ /"))
                            << sName.toStdString() << sText.toStdString();
                    EXPECT_NE(At(&sheet).Shown("Note"), "");
                    Press(sheet, "OK");
                    EXPECT_TRUE(sheet.isVisible());
                }
                Press(sheet, "Cancel");
                EXPECT_FALSE(sheet.isVisible());
            });
            EXPECT_EQ(Node(), bReply ? "" : "Name=N, FPS=9");
        }
    }
}

TEST_F(ParameterPages, AskTheRecorderAndLiveThroughItsFailure)
{
    stDef_VirtualNvrConfig stConfig;
    stConfig.bStreams = false;
    StartRecorder(stConfig);
    ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
    const struct
    {
        int nVendor, nHttpPort;
        const char *pszIP, *pszFirst;
        int nProfiles = 6;
    } arRows[] = {{0, 80, "192.168.1.21", "H264 / 1280X960", 5},  {2, 80, "192.168.1.22", "H264 / 2592X1944"},
                  {4, 8080, "192.168.1.23", "H264 / 2592x1944"},  {6, 80, "192.168.1.24", "H264 / 1280x960", 5},
                  {7, 80, "169.254.12.7", "H264 / 1920x1080", 5}, {8, 80, "192.168.1.26", "H264 / 1920x1080"},
                  {9, 8081, "169.254.80.41", "H264 / 1920x1080"}, {10, 80, "192.168.1.28", "H264 / 2048x1536"}};
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.nVendor);
        const std::unique_ptr<CCamObj_Base> pCamera(CCamObj_Base::s_F_p_CreateCamObj(row.nVendor, vm_pNvr.get()));
        stDef_CamConnect stConnect;
        stConnect.nVendorID = row.nVendor;
        stConnect.strIP = row.pszIP;
        stConnect.nHttpPort = row.nHttpPort;
        stConnect.strPassword = "cam&Era#1";
        ASSERT_TRUE(pCamera->m_F_b_SetConnect(stConnect));
        SetNode("Name=N");
        for (const bool bFails : {false, true}) {
            if (bFails)
                ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("camerasupport", {"status", 500}));
            ShowParameter(*pCamera, [&](CPropertySheet& sheet) {
                auto& objProfile = dynamic_cast<QComboBox&>(*At(&sheet).Find("Profile"));
                EXPECT_EQ(objProfile.count(), bFails ? 0 : row.nProfiles);
                EXPECT_EQ(objProfile.currentText(), bFails ? "" : row.pszFirst);
                EXPECT_EQ(At(&sheet).Shown("Note").isEmpty(), !bFails);
                EXPECT_EQ(objProfile.isEnabled(), !bFails);
            });
        }
        vm_nvr.m_F_o_Faults().m_S_Clear();
    }
}

} // namespace
