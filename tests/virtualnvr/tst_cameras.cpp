#include "CProbe.h"
#include "CVirtualNvr.h"
#include "cgi/CCameraRegistry.h"
#include "http/CRequestLog.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

constexpr char g_szAccount[] = "&uid=admin&pwd=cam&Era#1";

class Cameras : public ::testing::Test
{
protected:
    void SetUp() override
    {
        stDef_VirtualNvrConfig stConfig;
        stConfig.bStreams = false;
        std::string sError;
        ASSERT_TRUE(vm_objRecorder.m_F_b_Start(stConfig, sError)) << sError;
        vm_pProbe = std::make_unique<CProbe>(vm_objRecorder.m_F_n_HttpPort(), CProbe::emDef_Auth::Basic);
        vm_objCameras.load_file(VIRTUALNVR_CAMERAS);
    }

    /// The document, or one without a node if the recorder got no answer.
    pugi::xml_document Ask(const std::string& sTarget)
    {
        const stDef_ProbeReply stReply = vm_pProbe->m_F_o_Get("/cgi-bin/" + sTarget);
        pugi::xml_document objReply;
        EXPECT_EQ(stReply.nStatus == 200, !!objReply.load_string(stReply.sBody.c_str())) << stReply.sBody;
        return objReply;
    }
    pugi::xml_document Ask(const std::string& sAction, const std::string& sIP, const std::string& sPort, int nVendor,
                           const std::string& sAccount = g_szAccount)
    {
        return Ask("param.cgi?action=" + sAction + "&ip=" + sIP + "&port=" + sPort + sAccount +
                   "&vendorid=" + std::to_string(nVendor) + "&onvifauth=1");
    }
    static bool True(const pugi::xml_node& objNode, const std::string& sXPath)
    {
        return pugi::xpath_query(sXPath.c_str()).evaluate_boolean(objNode);
    }

    CVirtualNvr vm_objRecorder;
    std::unique_ptr<CProbe> vm_pProbe;
    pugi::xml_document vm_objCameras; ///< what is meant to be there
};

// What the client reads of each brand's abilities.
const struct
{
    int nVendor;
    const char* pszNode; ///< true of a node of its detect replies
    const char* pszSupport;
    const char* pszEntry;
} g_arBrands[] = {
    {0, "@ProfileName and @DefaultProfileID and @LowBitrate", "@DefaultID", "@ProfileID and @Bitrate and @MinBitrate"},
    {2, "@ProfileName and @DefaultProfileID and @LowBitrate", "@DefaultID", "@ProfileID and @MaxTargetBitrate"},
    {4, "@OnvifAuth and @PTZToken and @VEncoderHeight_S and not(@Resolution)", "Audio/@Count",
     "@Height and @MaxQuality"},
    {6, "@DefaultProfileID and @LowBitrate", "Quality/@Max and Bitrate_S/@Max", "@Codec"},
    {7, "@LowFPS and not(@LowBitrate)", "@MaxMjpgFPS and Quality004/@Name and @FPS", "@MinFPS"},
    {8, "@Format and not(@LowFPS)", "@FPS and Quality/@Count and Bitrate/@Max", "@ResolutionID"},
    {9, "@Format and @LowBitrate", "Quality003/@Name and Bitrate_M/@Max", "@Codec and @MaxFPS"},
    {10, "@LowBitrate and not(@Format)", "Quality_S/@Max", "@Width and not(@Codec)"},
};

TEST_F(Cameras, AnswerAsTheirBrandDoes)
{
    for (const auto& stBrand : g_arBrands) {
        int nModels = 0, nWithoutList = 0;
        for (const pugi::xml_node objModel : vm_objCameras.document_element().children("Model")) {
            if (objModel.attribute("VendorID").as_int() != stBrand.nVendor)
                continue;
            ++nModels;
            const std::string sModel = objModel.attribute("Name").value();
            SCOPED_TRACE(sModel);
            const pugi::xml_node objCamera =
                vm_objCameras.document_element().find_child_by_attribute("Camera", "Model", sModel.c_str());
            if (objCamera.attribute("Odd"))
                continue;
            const std::string sIP = objCamera.attribute("IP").value(), sPort = objCamera.attribute("HttpPort").value();
            const auto objDetect = Ask("detect&camid=0", sIP, sPort, stBrand.nVendor);
            EXPECT_TRUE(True(objDetect, "/XML/root/Camera/Cam000[@Model='" + sModel +
                                            "' and @RtspPort='554' and "
                                            "@Password='cam&Era#1' and @CamCapility and @FPS and " +
                                            stBrand.pszNode + "]"));
            const auto objSupport = Ask("camerasupport", sIP, sPort, stBrand.nVendor);
            EXPECT_TRUE(True(objSupport, std::string("/XML/root/Support[@Protocol and ") + stBrand.pszSupport + "]"));
            EXPECT_TRUE(True(objSupport, std::string("count(//*[starts-with(name(),'Resolution0') and ") +
                                             stBrand.pszEntry + "]) = sum(//Resolution/@Count)"));
            nWithoutList += !True(objSupport, "//Resolution");
        }
        EXPECT_EQ(nModels, 3) << stBrand.nVendor;
        EXPECT_EQ(nWithoutList, 1) << stBrand.nVendor;
    }
}

TEST_F(Cameras, FailInTheirWays)
{
    const struct
    {
        const char* pszIP;
        const char* pszPort;
        int nVendor;
        std::string sAccount;
        const char* pszModel; ///< of the detect reply; null: none comes
        bool bSupport;
    } arRows[] = {
        {"192.168.1.22", "80", 2, g_szAccount, "AM6-2812F", true},
        {"ID@12.7", "80", 7, g_szAccount, "QC-520", true},
        {"169.254.12.7", "80", 7, g_szAccount, "QC-520", true},
        {"192.0.2.102", "8080", 4, "&uid=onvif&pwd=0nv1f", "Dome 5M", true}, // it has an account of its own
        {"192.0.2.102", "8080", 4, g_szAccount, "Any", false},
        {"192.168.1.22", "80", 0, g_szAccount, "Any", false}, // of another maker
        {"192.168.1.22", "80", 2, "&uid=admin&pwd=cam&Era", "Any", false},
        {"192.168.1.22", "80", 2, "&uid=&pwd=", "Any", false},
        {"192.168.1.22", "81", 2, g_szAccount, nullptr, false}, // nobody is there
        {"192.168.1.99", "80", 2, g_szAccount, nullptr, false},
        {"192.168.1.29", "80", 6, g_szAccount, "Any", false},
        {"192.168.1.30", "80", 9, g_szAccount, "WN-300CD", false},
        {"192.168.1.31", "80", 2, g_szAccount, nullptr, true},
        {"169.254.3.99", "80", 4, g_szAccount, nullptr, false},
    };
    for (const auto& st : arRows) {
        SCOPED_TRACE(std::string(st.pszIP) + " " + st.sAccount);
        const auto objDetect = Ask("detect&camid=0", st.pszIP, st.pszPort, st.nVendor, st.sAccount);
        const auto objNode = objDetect.select_node("/XML/root/Camera/Cam000").node();
        EXPECT_STREQ(objNode.attribute("Model").as_string("none"), st.pszModel ? st.pszModel : "none");
        EXPECT_EQ(True(Ask("camerasupport", st.pszIP, st.pszPort, st.nVendor, st.sAccount), "/XML/root/Support"),
                  st.bSupport);
    }
    EXPECT_EQ(vm_pProbe->m_F_o_Get("/cgi-bin/param.cgi?action=detect").nStatus, 504);
}

TEST(RequestLog, ShowsNoPassword)
{
    const std::pair<const char*, const char*> arRows[] = {
        {"/a?b=c&d", "/a?b=c&d"},
        {"/a?uid=u&pwd=cam&Era#1&vendorid=2&onvifauth=1", "/a?uid=u&pwd=***&vendorid=2&onvifauth=1"},
        {"/a?PassWord=x&y=z&", "/a?PassWord=***"},
        {"/pwd=1", "/pwd=1"},
        {"/a?p%77d=x", "/a?p%77d=***"},
        {"/a?%50%41SS=x&b=1", "/a?%50%41SS=***"},
        {"http://h/a?pwd=x", "http://h/a?pwd=***"},
        {"http://u:p@ss@h/a?pwd=x@y", "http://***@h/a?pwd=***"},
        {"http://u:a/b?c@h/d", "http://***@h/d"},
        {"rtsp://u:p@h", "rtsp://***@h"},
        {"/a?mail=u@h", "/a?mail=u@h"},
    };
    for (const auto& [pszTarget, pszMasked] : arRows)
        EXPECT_EQ(CRequestLog::s_F_s_Masked(pszTarget), pszMasked);
}

} // namespace
