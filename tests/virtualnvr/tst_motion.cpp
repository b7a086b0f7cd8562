#include "CProbe.h"
#include "CVirtualNvr.h"
#include "cgi/CDocumentStore.h"
#include "http/CFaultTable.h"
#include "scene/CPtzBoard.h"
#include "scene/CSceneClock.h"
#include "scene/CSceneMotion.h"
#include "scene/stDef_EncodedClip.h"
#include "support/Files.h"
#include "support/Table.h"

#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <sstream>

namespace {

constexpr char g_szAdd[] = "add&group=Motion&template=motion&camera=";

/// A node of the list of cameras, "Cam<slot>"; each has an address of its own.
std::string Camera(int nSlot, int nVendorID, const std::string& sIP)
{
    return "<Cam00" + std::to_string(nSlot) + " VendorID=\"" + std::to_string(nVendorID) + "\" IP=\"" + sIP +
           "\" HttpPort=\"80\"/>";
}

std::string CameraList(int nCount, const std::string& sNodes)
{
    return "<root><Camera count=\"" + std::to_string(nCount) + "\">" + sNodes + "</Camera></root>";
}

class Motion : public testing::Test
{
protected:
    void SetUp() override { Start(); }
    void Start()
    {
        vm_pRecorder.reset(); // gives the folder up
        vm_pRecorder = std::make_unique<CVirtualNvr>();
        std::string sError;
        ASSERT_TRUE(vm_pRecorder->m_F_b_Start(
            {.nChannels = 8, .sStateFolder = vm_dirState.path().toStdString(), .bStreams = false}, sError))
            << sError;
        vm_pProbe = std::make_unique<CProbe>(vm_pRecorder->m_F_n_HttpPort());
    }
    stDef_ProbeReply Ask(const std::string& sAction)
    {
        return vm_pProbe->m_F_o_Get("/cgi-bin/config.cgi?action=" + sAction);
    }
    void PutCameras(const std::string& sText)
    {
        std::string sError;
        EXPECT_TRUE(vm_pRecorder->m_F_o_Documents().m_F_b_Put(emDef_Document::Camera, sText, sError)) << sError;
    }
    pugi::xml_node List(int nCamera)
    {
        const auto stReply = Ask("list&group=motion&camera=" + std::to_string(nCamera));
        vm_objReply.load_string(stReply.sBody.c_str());
        return vm_objReply.child("XML").child("root").child(("Cam00" + std::to_string(nCamera)).c_str());
    }
    /// "0 2 5": the numbers of the windows in their order; "-" if there is no list.
    std::string Indices(int nCamera)
    {
        const pugi::xml_node objCamera = List(nCamera);
        std::string s = objCamera ? "" : "-";
        for (const pugi::xml_node objWindow : objCamera.children())
            s += (s.empty() ? "" : " ") + std::string(objWindow.attribute("Index").value());
        EXPECT_EQ(std::distance(objCamera.begin(), objCamera.end()), objCamera.attribute("MotionDataCount").as_int());
        return s;
    }
    /// "10,20,110,90 Gate include 12 60"
    std::string Window(int nCamera, int nAt)
    {
        const pugi::xml_node objNode = List(nCamera).child(("MotionData00" + std::to_string(nAt)).c_str());
        std::string s;
        for (const char* pszKey : {"Left", "Top", "Right", "Bottom", "Name", "WindowType", "ObjectSize", "Sensitivity"})
            s += (s.empty() ? "" : "|") + std::string(objNode.attribute(pszKey).as_string("-"));
        return s;
    }

    QTemporaryDir vm_dirState;
    std::unique_ptr<CVirtualNvr> vm_pRecorder;
    std::unique_ptr<CProbe> vm_pProbe;
    pugi::xml_document vm_objReply;
};

} // namespace

// Slots of the seed: 0 street, 480 x 360, with window types; 1 of a brand without motion; 2 gate, 640 x 480; 3 lobby.
TEST_F(Motion, WindowsAreChangedAsAskedAndKept)
{
    for (const stDef_TableRow& row : ReadTable("motion_steps.txt", 3)) {
        if (!row[0].empty())
            EXPECT_EQ(Ask(row[0]).nStatus, 200) << row[0];
        EXPECT_EQ(Indices(row.Number(1)), row[2]) << row[0];
    }
    const std::string sUpdate = "update&Motion.M3.Left=0&Motion.M3.Top=1&Motion.M3.Right=480&Motion.M3.Bottom=360"
                                "&Motion.M3.Name=50%25%20%26%20%22%E5%80%89%22 <x&y=1&Motion.M3.Sensitivity=100"
                                "&Motion.M3.ObjectSize=1&Motion.M3.WindowType=exclude&camera=0";
    std::string sSent = sUpdate;
    sSent.replace(sSent.find(" <"), 2, "%20%3C");
    EXPECT_EQ(Ask(sSent).nStatus, 200);
    EXPECT_EQ(Ask("update&Motion.M2.Name=&Motion.M3.Right=640&Motion.M2.WindowType=&camera=2").nStatus, 200);
    const std::string sUsual = Window(0, 0);
    for (const bool bRestarted : {false, true}) {
        SCOPED_TRACE(bRestarted);
        EXPECT_EQ(Indices(0), "0 3 6");
        EXPECT_EQ(Window(0, 0), sUsual);
        EXPECT_EQ(Window(0, 1), "0|1|480|360|50% & \"倉\" <x|exclude|1|100");
        EXPECT_EQ(Window(2, 0).find("||-|"), Window(2, 0).find("|25|") - 3) << Window(2, 0) << ": no name, no type";
        EXPECT_STREQ(List(2).child("MotionData001").attribute("Right").value(), "640");
        EXPECT_EQ(Indices(2), "2 3 4 5");
        Start();
    }
    EXPECT_EQ(Ask(g_szAdd + std::string("0")).nStatus, 200);
    EXPECT_EQ(Indices(0), "0 3 6 7");
}

TEST_F(Motion, RefusesWhatMakesNoSense)
{
    for (const stDef_TableRow& row : ReadTable("motion_refusals.txt", 2)) {
        SCOPED_TRACE(row[1]);
        const bool bGood = row[0] == "200";
        const std::string sBefore = Ask("list&group=motion&camera=2").sBody;
        const stDef_ProbeReply stReply = Ask(row[1]);
        EXPECT_EQ(stReply.nStatus, row.Number(0));
        EXPECT_EQ(stReply.sBody.find("Code=\"ERROR\" Reason=\"") == std::string::npos, bGood);
        EXPECT_EQ(Ask("list&group=motion&camera=2").sBody == sBefore, !bGood);
    }
    ASSERT_TRUE(vm_pRecorder->m_F_o_Faults().m_F_b_Set("group=Motion.M3", {"status", 500}));
    EXPECT_EQ(Ask("remove&group=Motion.M3&camera=2").nStatus, 500);
    EXPECT_EQ(Ask("remove&group=Motion.M0&camera=2").nStatus, 200);
    for (const char* pszCamera : {"1", "4", "8"})
        EXPECT_EQ(vm_pProbe->m_F_o_Get(std::string("/cgi-bin/motiondata.cgi?camera=") + pszCamera).nStatus, 404);
}

TEST_F(Motion, WindowsFollowTheirCamera)
{
    bool bFirst = true;
    for (const stDef_TableRow& row : ReadTable("motion_lists.txt", 7)) {
        std::istringstream words(row[2]);
        std::string sNodes, sIP;
        for (int nSlot = 0, nVendorID = 0; words >> nVendorID >> sIP; ++nSlot)
            sNodes += Camera(nSlot, nVendorID, sIP);
        PutCameras(row[1].empty() ? "<root/>" : CameraList(row.Number(1), sNodes));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(Indices(static_cast<int>(i)), row[3 + i]) << row[0] << ", slot " << i;
        if (std::exchange(bFirst, false)) {
            Ask("remove&group=Motion.M3&camera=0");
            Ask(g_szAdd + std::string("1"));
        }
        Start();
    }
}

TEST_F(Motion, DropsWhatAChangedFileHoldsBeyondTheLimits)
{
    const QByteArray sGood =
        "Name=\"n\" Left=\"1\" Top=\"1\" Right=\"9\" Bottom=\"9\" ObjectSize=\"9\" Sensitivity=\"9\"/>";
    PutCameras(CameraList(1, Camera(0, 0, "10.0.0.1"))); // three windows
    vm_pRecorder.reset();
    WriteFile(
        vm_dirState.filePath("Motion.xml"),
        "<root><Cam000 VendorID=\"0\" IP=\"10.0.0.1\" HttpPort=\"80\" NextIndex=\"2147483647\"><Window Index=\"7\" " +
            sGood + "<Window Index=\"7\" " + sGood + "<Window Index=\"-1\" " + sGood +
            "<Window Index=\"1\"/><Window Index=\"4\" " + sGood + "</Cam000></root>");
    Start();
    EXPECT_EQ(Indices(0), "7 4");
    EXPECT_EQ(Ask(g_szAdd + std::string("0")).nStatus, 200);
    EXPECT_EQ(Indices(0), "7 4 0") << "numbers that have run out begin anew";
}

// What drives lights the window over the road and not the one in the sky; as much movement doesn't, if more is asked
// for.
TEST_F(Motion, StreamTellsWhatMovesInThePicture)
{
    for (const char* pszGroup : {"3", "5"})
        Ask(std::string("remove&camera=0&group=Motion.M") + pszGroup);
    const struct
    {
        const char* pszValues;
        int nThreshold, nMotion;
    } arRows[] = {{"Motion.M0.ObjectSize=10", 4, 1}, {"Motion.M0.ObjectSize=100", 41, 0}};
    for (const auto& stRow : arRows) {
        const std::string sUpdate = std::string("update&Motion.M2.ObjectSize=1&Motion.M2.Sensitivity=100&camera=0&");
        EXPECT_EQ(Ask(sUpdate + stRow.pszValues).nStatus, 200);
        const auto tLimit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        bool bMoves = false;
        vm_pProbe->m_S_SetWatcher([&](const std::string& sBody) {
            int nLevel = -1, nThreshold = 0, nMotion = -1, nSky = -1;
            const std::size_t nPart = std::min(sBody.rfind("group=0 "), sBody.size());
            if (std::sscanf(sBody.c_str() + nPart,
                            "group=0 level=%d threshold=%d motion=%d group=1 level=%d threshold=1 motion=0", &nLevel,
                            &nThreshold, &nMotion, &nSky) == 4) {
                EXPECT_EQ(nSky, 0);
                EXPECT_EQ(nThreshold, stRow.nThreshold);
                bMoves = nLevel >= 10;
                EXPECT_TRUE(!bMoves || nMotion == stRow.nMotion);
            }
            return !bMoves && std::chrono::steady_clock::now() < tLimit;
        });
        vm_pProbe->m_F_o_Get("/cgi-bin/motiondata.cgi?camera=0");
        vm_pProbe->m_S_SetWatcher({});
        EXPECT_TRUE(bMoves) << stRow.pszValues;
    }
}

TEST(SceneMotion, IsWhereSomethingMoves)
{
    CPtzBoard objPtz;
    objPtz.m_S_Reset(5);
    const auto at = [](int nFrame) { return (nFrame * 2 + 1) * (500'000'000LL / stDef_EncodedClip::s_nFps); };
    for (const stDef_TableRow& row : ReadTable("scene_motion.txt", 5)) {
        SCOPED_TRACE(row[0]);
        std::istringstream area(row[2]), range(row[4]);
        float fLeft = 0, fTop = 0, fRight = 0, fBottom = 0;
        int nLeast = 0, nMost = 0;
        area >> fLeft >> fTop >> fRight >> fBottom;
        range >> nLeast >> nMost;
        CSceneMotion objMotion(row.Number(1), objPtz);
        objMotion.m_S_Look(at(row.Number(3)));
        const stDef_PictureArea stArea{fLeft / 640, fTop / 360, fRight / 640, fBottom / 360};
        const int nLevel = objMotion.m_F_n_Level(stArea, 30);
        EXPECT_TRUE(nLevel >= nLeast && nLevel <= nMost) << nLevel;
        EXPECT_GE(objMotion.m_F_n_Level(stArea, 8), nLevel);
        EXPECT_LE(objMotion.m_F_n_Level(stArea, 62), nLevel);
        const stDef_PictureArea arMasked[] = {{stArea.fLeft, 0, stArea.fRight, 1}};
        EXPECT_EQ(objMotion.m_F_n_Level(stArea, 30, arMasked), 0);
    }
    CSceneMotion objMotion(0, objPtz);
    const stDef_PictureArea stHouses{0.05F, 0.25F, 0.6F, 0.5F};
    objMotion.m_S_Look(at(30));
    EXPECT_EQ(objMotion.m_F_n_Level(stHouses, 30), 0);
    ASSERT_TRUE(objPtz.m_F_b_Command(0, {{"autopan", "on"}, {"speed", "10"}}));
    const auto tLimit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    do
        objMotion.m_S_Look(at(30));
    while (objMotion.m_F_n_Level(stHouses, 30) < 20 && std::chrono::steady_clock::now() < tLimit);
    EXPECT_GE(objMotion.m_F_n_Level(stHouses, 30), 20) << "a camera that turns";
}

// A stream begins up to half a group of pictures off the clock, and comes to it without a jump.
TEST(SceneClock, BringsAStreamToItself)
{
    constexpr std::int64_t nSecondNs = 1'000'000'000;
    for (const std::int64_t nBeginNs : {0LL, 399'000'000LL, 5'950'000'000LL, 7'777'777'777LL}) {
        std::int64_t nNs = nBeginNs + 3600 * nSecondNs;
        int nFrame = CSceneClock::s_F_n_KeyFrame(nNs);
        EXPECT_EQ(nFrame % stDef_EncodedClip::s_nGop, 0);
        for (int n = 0; n < 20 * stDef_EncodedClip::s_nFps; ++n) {
            const std::int64_t nPeriodNs = CSceneClock::s_F_n_PeriodNs(nFrame, nNs);
            ASSERT_NEAR(static_cast<double>(nPeriodNs), 1e9 / stDef_EncodedClip::s_nFps, 2.2e6);
            nNs += nPeriodNs;
            nFrame = (nFrame + 1) % stDef_EncodedClip::s_nFrames;
        }
        EXPECT_EQ(CSceneClock::s_F_n_Frame(nNs + 10'000'000), nFrame) << nBeginNs;
        EXPECT_EQ(CSceneClock::s_F_n_Frame(nNs + 57'000'000), nFrame) << nBeginNs;
    }
}
