#include "CProbe.h"
#include "CVirtualNvr.h"
#include "scene/CPtzCamera.h"
#include "support/Table.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

/// A query as it stands in an URL.
CPtzCamera::Query Parse(const std::string& sQuery)
{
    CPtzCamera::Query mapQuery;
    for (std::size_t nAt = 0; nAt < sQuery.size();) {
        const std::size_t nEnd = std::min(sQuery.find('&', nAt), sQuery.size());
        const std::size_t nEquals = sQuery.find('=', nAt);
        mapQuery[sQuery.substr(nAt, nEquals - nAt)] = sQuery.substr(nEquals + 1, nEnd - nEquals - 1);
        nAt = nEnd + 1;
    }
    return mapQuery;
}

void ExpectPose(const CPtzCamera& objCamera, double fAt, float fPan, float fTilt, float fZoom)
{
    const stDef_PtzPose stPose = objCamera.m_F_o_State(fAt).stPose;
    EXPECT_NEAR(stPose.fPan, fPan, 0.01) << "at " << fAt;
    EXPECT_NEAR(stPose.fTilt, fTilt, 0.01) << "at " << fAt;
    EXPECT_NEAR(stPose.fZoom, fZoom, 0.01) << "at " << fAt;
}

} // namespace

TEST(Ptz, MovesByCommandsAndTime)
{
    CPtzCamera objCamera(0);
    double fNow = 1000;
    for (const stDef_TableRow& row : ReadTable("ptz.txt", 6)) {
        SCOPED_TRACE(row[0]);
        const double fAt = fNow + row.Number(1);
        EXPECT_TRUE(objCamera.m_F_b_Command(Parse(row[0]), fNow));
        ExpectPose(objCamera, fAt, std::stof(row[2]), std::stof(row[3]), std::stof(row[4]));
        EXPECT_EQ(objCamera.m_F_o_State(fAt).bMoving, row.Is(5));
        fNow += 10;
    }
}

TEST(Ptz, StepsAddUpAndAStopHoldsWhatMoves)
{
    CPtzCamera objCamera(0);
    for (int n = 0; n < 4; ++n)
        objCamera.m_F_b_Command(Parse("move=right&speed=2"), 10 + 0.05 * n);
    ExpectPose(objCamera, 11, 12, 0, 0);
    objCamera.m_F_b_Command(Parse("gotoserverpresetno=1"), 20);
    const stDef_PtzPose stHalf = objCamera.m_F_o_State(20.6).stPose;
    EXPECT_LT(stHalf.fPan, 12);
    EXPECT_GT(stHalf.fPan, -22);
    objCamera.m_F_b_Command(Parse("continuouspantiltmove=0:0"), 20.6);
    EXPECT_EQ(objCamera.m_F_o_State(30).stPose, stHalf);
    EXPECT_EQ(objCamera.m_F_o_State(30).nPreset, -1);
}

TEST(Ptz, RefusesWhatItDoesNotKnow)
{
    CPtzCamera objCamera(1);
    objCamera.m_F_b_Command(Parse("gotoserverpresetno=4"), 0);
    for (const stDef_TableRow& row : ReadTable("ptz_refused.txt", 1)) {
        EXPECT_FALSE(objCamera.m_F_b_Command(Parse(row[0]), 5)) << row[0];
        EXPECT_EQ(objCamera.m_F_o_State(9).nPreset, 4) << row[0];
    }
}

TEST(Ptz, ShowsAReadOutOnlyAwayFromHome)
{
    CPtzCamera objCamera(1);
    const auto view = [&](const char* pszQuery, double fNow) {
        EXPECT_TRUE(objCamera.m_F_b_Command(Parse(pszQuery), fNow)) << pszQuery;
        return objCamera.m_F_o_View(fNow + 5);
    };
    EXPECT_EQ(objCamera.m_F_o_View(0), stDef_PtzView());
    stDef_PtzView stView = view("gotoserverpresetno=2", 10);
    EXPECT_EQ(stView.sPlace, "P 14.5 T 0.5 Z 4.6X");
    EXPECT_EQ(stView.sDoing, "LOADING DOCK & RAMP");
    EXPECT_FLOAT_EQ(stView.fX, 145);
    EXPECT_FLOAT_EQ(stView.fY, -5);
    EXPECT_EQ(view("tour=on&tournum=1", 20).sDoing, "PERIMETER - CAR PARK");
    EXPECT_EQ(view("move=home", 30), stDef_PtzView());
    stView = view("move=focusdown&speed=10", 40);
    EXPECT_EQ(stView.sDoing, "FOCUS 30");
    EXPECT_EQ(stView.nBlur, 4);
    stView = view("move=irisup&speed=10", 50);
    EXPECT_EQ(stView.sDoing, "FOCUS 30 - IRIS 70");
    EXPECT_GT(stView.fLight, 1.2F);
    EXPECT_EQ(view("autofocus=on", 60).sDoing, "IRIS 70");
    EXPECT_EQ(view("autoiris=on", 70), stDef_PtzView());
    CPtzCamera objMirrored(5);
    objMirrored.m_F_b_Command(Parse("gotoserverpresetno=2"), 0);
    EXPECT_FLOAT_EQ(objMirrored.m_F_o_View(9).fX, -145);
}

TEST(Ptz, IsReachedThroughTheRecordersPrograms)
{
    for (const bool bPC : {false, true}) {
        SCOPED_TRACE(bPC ? "PC" : "embedded");
        CVirtualNvr objRecorder;
        std::string sError;
        ASSERT_TRUE(objRecorder.m_F_b_Start({.nChannels = 6, .bPC = bPC, .bStreams = false}, sError)) << sError;
        CProbe objProbe(objRecorder.m_F_n_HttpPort());
        const auto get = [&objProbe](const std::string& sTarget) {
            pugi::xml_document objDocument;
            const stDef_ProbeReply stReply = objProbe.m_F_o_Get("/cgi-bin/" + sTarget);
            EXPECT_TRUE(stReply.nStatus == 200 && objDocument.load_string(stReply.sBody.c_str())) << sTarget;
            return objDocument;
        };
        for (const stDef_TableRow& row : ReadTable("ptz_programs.txt", 2))
            EXPECT_EQ(objProbe.m_F_o_Get("/cgi-bin/" + row[0]).nStatus, row.Number(1)) << row[0];
        for (const int nCamera : {4, 5}) {
            const auto objDocument = get("ptzstatus.cgi?camera=" + std::to_string(nCamera));
            const pugi::xml_node objPtz = objDocument.child("XML").child("root").child("Ptz");
            EXPECT_EQ(objPtz.attribute("AutoFocus").as_int(-1), nCamera == 4 ? 1 : 0);
            EXPECT_EQ(objPtz.attribute("Focus").as_int(), nCamera == 4 ? 50 : 56);
        }
        if (bPC)
            continue;
        objProbe.m_F_o_Get("/cgi-bin/uictrl.cgi?action=urlctrl&fullscreen=1&quad=2&style=3&camarray=3,2,1,0,");
        const auto objDisplay = get("uictrl.cgi?action=status");
        const pugi::xml_node objNode = objDisplay.child("XML").child("root").child("Display");
        EXPECT_EQ(objNode.attribute("Quad").as_int(), 2);
        EXPECT_STREQ(objNode.attribute("CamArray").as_string(), "3,2,1,0,");
    }
}
