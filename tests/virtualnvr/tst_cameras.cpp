#include "CProbe.h"
#include "CVirtualNvr.h"
#include "cgi/CCameraRegistry.h"
#include "http/CRequestLog.h"
#include "support/Table.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

constexpr char g_szAccount[] = "&uid=admin&pwd=cam&Era#1";

class Cameras : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string sError;
        ASSERT_TRUE(vm_objRecorder.m_F_b_Start({.bStreams = false}, sError)) << sError;
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

TEST_F(Cameras, AnswerAsTheirBrandDoes)
{
    for (const stDef_TableRow& row : ReadTable("brands.txt", 4)) {
        int nModels = 0, nWithoutList = 0;
        for (const pugi::xml_node objModel : vm_objCameras.document_element().children("Model")) {
            if (objModel.attribute("VendorID").as_int() != row.Number(0))
                continue;
            ++nModels;
            const std::string sModel = objModel.attribute("Name").value();
            SCOPED_TRACE(sModel);
            const pugi::xml_node objCamera =
                vm_objCameras.document_element().find_child_by_attribute("Camera", "Model", sModel.c_str());
            if (objCamera.attribute("Odd"))
                continue;
            const std::string sIP = objCamera.attribute("IP").value(), sPort = objCamera.attribute("HttpPort").value();
            const auto objDetect = Ask("detect&camid=0", sIP, sPort, row.Number(0));
            EXPECT_TRUE(True(objDetect, "/XML/root/Camera/Cam000[@Model='" + sModel +
                                            "' and @RtspPort='554' and "
                                            "@Password='cam&Era#1' and @CamCapility and @FPS and " +
                                            row[1] + "]"));
            const auto objSupport = Ask("camerasupport", sIP, sPort, row.Number(0));
            EXPECT_TRUE(True(objSupport, "/XML/root/Support[@Protocol and " + row[2] + "]"));
            EXPECT_TRUE(True(objSupport, "count(//*[starts-with(name(),'Resolution0') and " + row[3] +
                                             "]) = sum(//Resolution/@Count)"));
            nWithoutList += !True(objSupport, "//Resolution");
        }
        EXPECT_EQ(nModels, 3) << row.Number(0);
        EXPECT_EQ(nWithoutList, 1) << row.Number(0);
    }
}

TEST_F(Cameras, FailInTheirWays)
{
    for (const stDef_TableRow& row : ReadTable("cameras_asked.txt", 6)) {
        SCOPED_TRACE(row.sWhere);
        const std::string sAccount = row[3].empty() ? g_szAccount : row[3];
        const auto objDetect = Ask("detect&camid=0", row[0], row[1], row.Number(2), sAccount);
        const auto objNode = objDetect.select_node("/XML/root/Camera/Cam000").node();
        EXPECT_EQ(objNode.attribute("Model").as_string("none"), row[4]);
        EXPECT_EQ(True(Ask("camerasupport", row[0], row[1], row.Number(2), sAccount), "/XML/root/Support"), row.Is(5));
    }
    EXPECT_EQ(vm_pProbe->m_F_o_Get("/cgi-bin/param.cgi?action=detect").nStatus, 504);
}

TEST(RequestLog, ShowsNoPassword)
{
    for (const stDef_TableRow& row : ReadTable("masked.txt", 2))
        EXPECT_EQ(CRequestLog::s_F_s_Masked(row[0]), row[1]);
}

} // namespace
