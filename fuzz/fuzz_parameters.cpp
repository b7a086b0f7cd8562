#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/brands/Drivers.h"
#include "parameter/CDlgParameters.h"
#include "toolkit/user/CUserSide.h"

using namespace Qt::StringLiterals;

namespace {

CWndNvrEmbedded* g_pNvr = nullptr;
QString g_sAbilities;
int g_nMessages = 0;

/// Confirms all messages.
class CNobody : public CUserSide
{
public:
    bool m_F_b_Prompt(QWidget* /*pParent*/, const stDef_Prompt& /*stPrompt*/) override
    {
        ++g_nMessages;
        return true;
    }
};

template <class Driver>
class CServed : public Driver
{
public:
    bool m_F_b_GetSupport(CXmlObj* pSupport, int /*nTimeoutMs*/) override
    {
        return pSupport->m_F_b_LoadXML(g_sAbilities);
    }
};

QString Value(const QString& sNode, const QString& sKey)
{
    return g_pNvr->vm_xmlCamera.m_F_s_Value(u"/root/Camera/"_s + sNode, sKey);
}

/// Does to each control what the next byte says.
void Play(const QWidget& wndPage, const std::uint8_t* pData, std::size_t nSize)
{
    const auto arWidgets = wndPage.findChildren<QWidget*>();
    for (std::size_t i = 0; i + 1 < nSize && i < 64; i += 2) {
        QWidget* const pWidget = arWidgets[pData[i] % arWidgets.size()];
        if (!pWidget->isEnabled())
            continue;
        if (auto* const pBox = qobject_cast<QCheckBox*>(pWidget)) {
            pBox->click();
        } else if (auto* const pEdit = qobject_cast<QLineEdit*>(pWidget)) {
            pEdit->setText(QString::number(pData[i + 1] * 40));
        } else if (auto* const pList = qobject_cast<QComboBox*>(pWidget); pList && pList->count() > 0) {
            pList->setCurrentIndex(pData[i + 1] % pList->count());
            Q_EMIT pList->activated(pList->currentIndex());
        }
    }
}

template <class Driver, class Page>
void TryPage(const QString& sCamera, const std::uint8_t* pData, std::size_t nSize)
{
    CXmlObj& xmlCamera = g_pNvr->vm_xmlCamera;
    xmlCamera.m_F_b_LoadXML(u"<root><Camera count='2'><Cam000 FPS='kept'/>"_s + sCamera + u"</Camera></root>"_s);
    CServed<Driver> objCamera;
    objCamera.m_pNvr = g_pNvr;
    objCamera.m_nCamIndex = 1;
    QDialog wndSheet;
    auto* const pPage = new Page(&objCamera);
    pPage->setParent(&wndSheet);
    const QString sBefore = xmlCamera.m_F_s_GetXML(), sLowFps = Value(u"Cam001"_s, u"LowFPS"_s);
    pPage->OnInitDialog();
    Expect(xmlCamera.m_F_s_GetXML() == sBefore, "opening writes nothing");
    Expect(!pPage->m_F_b_Changed(), "nothing is changed at first");
    Play(*pPage, pData, nSize);
    Expect(xmlCamera.m_F_s_GetXML() == sBefore, "changes write nothing before OK");
    const int nMessages = g_nMessages;
    const bool bTaken = pPage->OnApply();
    const bool bFilled = xmlCamera.m_F_b_IsOpen() && pPage->isEnabled();
    Expect(bTaken || !bFilled == (g_nMessages == nMessages), "a refusal says why, where the page has something");
    Expect(!bTaken || bFilled, "an empty page is refused");
    Expect(Value(u"Cam001"_s, u"LowFPS"_s) == sLowFps, "the low rate is never written under its name");
    Expect(!xmlCamera.m_F_b_IsOpen() || Value(u"Cam000"_s, u"FPS"_s) == u"kept"_s, "other cameras stay as they are");
    Expect(bFilled || xmlCamera.m_F_s_GetXML() == sBefore, "an empty page writes nothing");
    if (!bTaken)
        return;
    const QString sFirst = xmlCamera.m_F_s_GetXML();
    Expect(pPage->OnApply() && xmlCamera.m_F_s_GetXML() == sFirst, "a second OK writes the same");
}

} // namespace

/// What the font library keeps of the first text is no finding.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerInitialize(int* pArgc, char*** pppArgs)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(*pArgc, *pppArgs); // for good
    g_pNvr = static_cast<CWndNvrEmbedded*>(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, nullptr));
    CUserSide::s_S_Replace(new CNobody);
    return 0;
}

/// Abilities, the camera's node and what a user does, with a line of dashes between them; given to all pages.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const QByteArray arAll(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize));
    const QByteArray arDashes("\n----\n");
    const auto nNode = arAll.indexOf(arDashes);
    const auto nPlay = nNode < 0 ? -1 : arAll.indexOf(arDashes, nNode + 1);
    g_sAbilities = QString::fromUtf8(arAll.left(nNode));
    const auto nNodeAt = nNode + arDashes.size();
    const QString sCamera =
        nNode < 0 ? QString() : QString::fromUtf8(arAll.mid(nNodeAt, nPlay < 0 ? -1 : nPlay - nNodeAt));
    const QByteArray arPlay = nPlay < 0 ? QByteArray() : arAll.mid(nPlay + arDashes.size());
    const auto* const pPlay = reinterpret_cast<const std::uint8_t*>(arPlay.constData());
    const auto nPlays = static_cast<std::size_t>(arPlay.size());
    TryPage<CCamObj_AMTKV5, CDlgParameter_AMTKV5>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_AMTKV6, CDlgParameter_AMTKV6>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_DYNACOLOR, CDlgParameter_DYNACOLOR>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_FITI, CDlgParameter_FITI>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_ONVIF, CDlgParameter_ONVIF>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_PIXORD, CDlgParameter_PIXORD>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_SMAX, CDlgParameter_SMAX>(sCamera, pPlay, nPlays);
    TryPage<CCamObj_ZAVIO, CDlgParameter_ZAVIO>(sCamera, pPlay, nPlays);
    return 0;
}
