#include <QXmlStreamReader>
#include <map>

#include "drivers/BrandCatalogue.h"
#include "drivers/brands/Drivers.h"
#include "support/Files.h"
#include "support/HostFixture.h"

namespace {

using Attributes = QList<std::pair<QString, QString>>;

/// As text, for a difference that can be read.
std::string Lines(const Attributes& arAttributes)
{
    QString sLines;
    for (const auto& [sKey, sValue] : arAttributes)
        sLines += sKey + '=' + sValue + '\n';
    return sLines.toStdString();
}

/// One case of fixtures/cases.txt.
struct stDef_Case
{
    int nLine = 0;
    int nVendor = -1;
    std::map<QString, QString> mapParts; ///< "support" and so on
};

class Drivers : public HostFixture
{
protected:
    static constexpr int Index = 5;

    void SetUp() override
    {
        HostFixture::SetUp();
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env));
        int nLine = 0;
        for (const QString& sLine : QString::fromUtf8(ReadFile(FIXTURES "cases.txt")).split('\n')) {
            ++nLine;
            const QString sWord = sLine.section(' ', 0, 0), sRest = sLine.section(' ', 1);
            if (sWord == "keys")
                vm_mapKeys[sRest.section(' ', 0, 0).toInt()] = sRest.section(' ', 1).split(", ");
            else if (sWord == "case")
                vm_arCases.push_back({nLine, sRest.toInt(), {}});
            else if (!sWord.isEmpty() && !sWord.startsWith('#'))
                vm_arCases.back().mapParts[sWord] = sRest;
        }
        ASSERT_EQ(vm_mapKeys.size(), DriverList().size());
        vm_sDetect = QString::fromUtf8(ReadFile(FIXTURES "detect.xml")).trimmed();
    }

    CWndNvrEmbedded& Nvr() { return *static_cast<CWndNvrEmbedded*>(vm_pNvr.get()); }

    /// The camera's node, in the order of its keys.
    Attributes Node(int nIndex)
    {
        QXmlStreamReader xml(Nvr().vm_xmlCamera.m_F_s_GetXML());
        Attributes arAttributes;
        int nFound = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QString::asprintf("Cam%03d", nIndex))
                continue;
            ++nFound;
            for (const QXmlStreamAttribute& attribute : xml.attributes())
                arAttributes.append({attribute.name().toString(), attribute.value().toString()});
        }
        EXPECT_LE(nFound, 1);
        return arAttributes;
    }

    /// What a driver takes over, with the name behind `pszBefore`.
    Attributes Taken(int nVendor, const char* pszBefore, const QString& sName)
    {
        CXmlObj xmlDetect;
        EXPECT_TRUE(xmlDetect.m_F_b_LoadXML(vm_sDetect));
        Attributes arTaken;
        for (const QString& sKey : vm_mapKeys[nVendor]) {
            arTaken.append({sKey, xmlDetect.m_F_s_Value("/root/Camera/Cam000", sKey, "missing")});
            if (sKey == pszBefore)
                arTaken.append({"Name", sName});
        }
        return arTaken;
    }
    static void Change(Attributes& arAttributes, const QString& sChanges)
    {
        for (const QString& sChange : sChanges.split(", ", Qt::SkipEmptyParts)) {
            const QString sKey = sChange.section('=', 0, 0), sValue = sChange.section('=', 1).replace('~', ' ');
            const auto it = std::find_if(arAttributes.begin(), arAttributes.end(),
                                         [&](const auto& pair) { return pair.first == sKey; });
            if (sKey.startsWith('+'))
                arAttributes.append({sKey.mid(1), sValue});
            else if (it == arAttributes.end())
                ADD_FAILURE() << "no key " << sKey.toStdString();
            else
                it->second = sValue;
        }
    }

    std::unique_ptr<CCamObj_Base> Make(int nVendor, int nIndex = Index)
    {
        std::unique_ptr<CCamObj_Base> pCamera(CCamObj_Base::s_F_p_CreateCamObj(nVendor, vm_pNvr.get()));
        if (pCamera)
            pCamera->m_nCamIndex = nIndex;
        return pCamera;
    }

    CNvrHolder vm_pNvr;
    std::map<int, QStringList> vm_mapKeys;
    std::vector<stDef_Case> vm_arCases;
    QString vm_sDetect;
};

TEST_F(Drivers, BringRepliesAndTemplateTogether)
{
    ASSERT_GE(vm_arCases.size(), 25u);
    for (stDef_Case& stCase : vm_arCases) {
        SCOPED_TRACE("cases.txt, line " + std::to_string(stCase.nLine));
        CXmlObj xmlDetect, xmlSupport;
        if (stCase.mapParts["detect"] != "closed")
            ASSERT_TRUE(
                xmlDetect.m_F_b_LoadXML(QString(vm_sDetect).replace("</root>", stCase.mapParts["detect"] + "</root>")));
        if (stCase.mapParts["support"] != "closed")
            ASSERT_TRUE(xmlSupport.m_F_b_LoadXML("<root><Support " + stCase.mapParts["abilities"] + ">" +
                                                 stCase.mapParts["support"] + "</Support></root>"));
        ASSERT_TRUE(Nvr().vm_xmlSystem.m_F_b_LoadXML("<root><system><camera><template " + stCase.mapParts["template"] +
                                                     "/></camera></system></root>"));
        ASSERT_TRUE(Nvr().vm_xmlCamera.m_F_b_LoadXML("<root><Camera count='5'><Cam004 IP='4'/></Camera></root>"));
        const auto pCamera = Make(stCase.nVendor);
        EXPECT_TRUE(pCamera->m_F_b_ApplyDetect(&xmlDetect));
        EXPECT_TRUE(pCamera->m_F_b_ApplyTemplate(&xmlDetect, &xmlSupport));
        Attributes arExpected = Taken(stCase.nVendor, "IP", "M1 10.1.2.3");
        Change(arExpected, stCase.mapParts["expect"]);
        EXPECT_EQ(Lines(Node(Index)), Lines(arExpected));
        EXPECT_EQ(Lines(Node(4)), "IP=4\n");
    }
}

TEST_F(Drivers, CopyTheirKeysAndNoOthers)
{
    for (const auto& [nVendor, arKeys] : vm_mapKeys) {
        SCOPED_TRACE(nVendor);
        for (const bool bPort : {true, false}) {
            QString sXml = QString(vm_sDetect).replace("</Camera>", "<Cam001 Old='1' IP='x'/></Camera>");
            sXml.replace("RtspPort=\"d-RtspPort\"", bPort ? "RtspPort=\"d-RtspPort\"" : "");
            ASSERT_TRUE(Nvr().vm_xmlCamera.m_F_b_LoadXML(sXml));
            const Attributes arSource = Node(0);
            const auto pCamera = Make(nVendor, 0);
            Attributes arExpected = Taken(nVendor, "Model", "d-Name");
            if (!bPort)
                Change(arExpected, nVendor == 0 ? "RtspPort=" : "RtspPort=554");
            for (const int nTo : {1, 2}) { // one that is there, and one that isn't
                pCamera->m_F_b_CopyToIndex(nTo);
                EXPECT_EQ(Lines(Node(nTo)), Lines(arExpected));
            }
            pCamera->m_F_b_CopyToIndex(0);
            EXPECT_EQ(Lines(Node(0)), Lines(arSource));
            EXPECT_EQ(pCamera->m_nCamIndex, 0);
        }
    }
}

TEST_F(Drivers, AnswerFalseOnlyWhenBothDocumentsAreClosed)
{
    for (const auto& [nVendor, arKeys] : vm_mapKeys) {
        SCOPED_TRACE(nVendor);
        const auto pCamera = Make(nVendor);
        for (const bool bCamera : {false, true}) {
            for (const bool bReply : {false, true}) {
                CXmlObj xmlReply, xmlClosed;
                if (bReply)
                    xmlReply.m_F_b_LoadXML("<root><Support DefaultID='1'/></root>");
                Nvr().vm_xmlCamera.m_F_b_Close();
                if (bCamera)
                    Nvr().vm_xmlCamera.m_F_b_LoadXML("<root/>");
                EXPECT_EQ(pCamera->m_F_b_ApplyDetect(&xmlReply), bCamera || bReply);
                EXPECT_EQ(pCamera->m_F_b_ApplyTemplate(&xmlClosed, &xmlReply), bCamera || bReply);
                pCamera->m_F_b_CopyToIndex(1);
                EXPECT_EQ(Nvr().vm_xmlCamera.m_F_b_IsOpen(), bCamera);
            }
        }
    }
}

TEST_F(Drivers, AreMadeByVendorAlone)
{
    for (int nVendor = -2; nVendor <= 12; ++nVendor) {
        CCamObj_Base* pCamera = CCamObj_Base::s_F_p_CreateCamObj(nVendor, vm_pNvr.get());
        EXPECT_EQ(pCamera != nullptr, vm_mapKeys.count(nVendor) == 1) << nVendor;
        if (!pCamera)
            continue;
        EXPECT_EQ(pCamera->m_pNvr, vm_pNvr.get());
        EXPECT_EQ(pCamera->m_pEnv, &vm_env);
        EXPECT_EQ(pCamera->m_stConnect.strModel, "Any");
        EXPECT_EQ(pCamera->m_stConnect.nRtspPort, 554);
        pCamera->m_S_Release(&pCamera);
        EXPECT_EQ(pCamera, nullptr);
    }
    QStringList arListed, arModels;
    for (const stDef_BrandRow& stRow : g_astBrandCatalogue) {
        EXPECT_EQ(stRow.bListed, vm_mapKeys.count(stRow.nVendorID) == 1) << stRow.strName;
        if (stRow.bListed)
            arListed << QString("%1 %2").arg(stRow.nVendorID).arg(stRow.strName);
        int nModels = 0;
        while (*stRow.astModel[nModels].strModel)
            ++nModels;
        arModels << QString::number(nModels);
    }
    EXPECT_EQ(arModels.join(' ').toStdString(), "6 3 1 3 1 0 0 0 0 2 2");
    EXPECT_EQ(arListed.join(", ").toStdString(),
              "8 Velmora SDK1, 9 Velmora SDK2, 7 Velmora SDK3, 6 Velmora SDK4, 10 Velmora SDK5, 0 Velmora SDK6, "
              "2 Velmora SDK7, 4 ONVIF");
}

TEST_F(Drivers, RefuseARecordThatReachesNobody)
{
    const auto pCamera = Make(6);
    stDef_CamConnect st;
    st.strIP = "10.0.0.1";
    st.nHttpPort = 0;
    EXPECT_TRUE(pCamera->m_F_b_SetConnect(st));
    for (auto fnSpoil :
         {+[](stDef_CamConnect& stBad) { stBad.strIP.clear(); }, +[](stDef_CamConnect& stBad) { stBad.nHttpPort = -1; },
          +[](stDef_CamConnect& stBad) { stBad.strUser.clear(); }}) {
        stDef_CamConnect stBad = st;
        stBad.strModel = "bad";
        fnSpoil(stBad);
        EXPECT_FALSE(pCamera->m_F_b_SetConnect(stBad));
        EXPECT_EQ(pCamera->m_stConnect.strModel, "Any");
    }
}

TEST_F(Drivers, AskForAbilitiesWithTheAccountAsItStands)
{
    StartRecorder({.bStreams = false});
    ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
    const auto pCamera = Make(2);
    stDef_CamConnect st{2, "AM6-2812F", "n", "192.168.1.22", 80, 554, 0, "admin", "cam&Era#1"};
    ASSERT_TRUE(pCamera->m_F_b_SetConnect(st));
    CXmlObj xmlSupport;
    EXPECT_TRUE(pCamera->m_F_b_GetSupport(&xmlSupport, 5000));
    EXPECT_EQ(xmlSupport.m_F_n_GetValueInt("/root/Support/Resolution", "Count", 0), 6);
    st.strPassword = "?a=b&c%41+d/;%1 \xFC";
    ASSERT_TRUE(pCamera->m_F_b_SetConnect(st));
    EXPECT_FALSE(pCamera->m_F_b_GetSupport(&xmlSupport, 5000));
    EXPECT_EQ(vm_nvr.m_F_o_Log().m_F_ar_Entries().back().sTarget,
              "/cgi-bin/param.cgi?action=camerasupport&ip=192.168.1.22&port=80&uid=admin&pwd=?a=b&c%41+d/;%1%20%FC"
              "&vendorid=2&onvifauth=0");
}

} // namespace
