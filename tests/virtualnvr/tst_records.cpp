#include "CProbe.h"
#include "CVirtualNvr.h"
#include "records/RecordFaults.h"
#include "scene/CClipLibrary.h"
#include "support/Table.h"

#include <atomic>
#include <gtest/gtest.h>
#include <sstream>

namespace {
constexpr std::int64_t MinuteMs = 60000, HourMs = 3600000;
constexpr std::int64_t NowMs = 1795480209000;  // 2026-11-24 00:30:09, so that an hour reaches into the day before
constexpr std::int64_t FileMs = 1795479600000; // 00:20, of the last file that is whole

std::uint64_t NumberAt(const std::string& s, std::size_t nAt, int nWidth)
{
    std::uint64_t n = 0;
    while (nWidth-- > 0)
        n = n << 8 | static_cast<unsigned char>(s.at(nAt + static_cast<std::size_t>(nWidth)));
    return n;
}

std::string Escaped(const std::string& s)
{
    std::ostringstream objText;
    for (const char c : s)
        objText << '%' << std::hex << std::uppercase << (c >> 4 & 15) << (c & 15);
    return objText.str();
}

struct stDef_Record
{
    std::uint64_t nMs, nPlace, nLength;
};
std::vector<stDef_Record> RecordsOf(const std::string& sData, std::size_t nFrom = 0)
{
    std::vector<stDef_Record> arRecords;
    EXPECT_EQ(sData.size() % 16, 0u);
    for (std::size_t n = nFrom; n + 16 <= sData.size(); n += 16)
        arRecords.push_back({NumberAt(sData, n, 8), NumberAt(sData, n + 8, 4), NumberAt(sData, n + 12, 4)});
    return arRecords;
}

using Blocks = std::vector<std::pair<std::uint64_t, std::string>>;
Blocks BlocksOf(const std::string& sReply)
{
    Blocks arBlocks;
    for (std::size_t n = 0; n < sReply.size(); n += 9 + arBlocks.back().second.size()) {
        const std::uint64_t nLength = NumberAt(sReply, n + 4, 4);
        EXPECT_EQ(sReply.at(n + 8 + nLength), '\0');
        arBlocks.emplace_back(NumberAt(sReply, n, 4), sReply.substr(n + 8, nLength));
    }
    return arBlocks;
}

/// What a stream shows at a time, a key frame with its followers.
std::string Gop(int nChannel, bool bSecond, std::int64_t nGop)
{
    const auto pClip = CClipLibrary::s_F_o_Shared().m_F_p_Get(nChannel, bSecond);
    std::string sImage;
    for (std::size_t n = 0; n < 10; ++n) {
        const auto& arBytes = pClip->arUnits.at(static_cast<std::size_t>(nGop % 9) * 10 + n).arBytes;
        sImage.append(arBytes.begin(), arBytes.end());
    }
    return sImage;
}

class Records : public ::testing::Test
{
protected:
    void m_S_Start(stDef_VirtualNvrConfig stConfig = {})
    {
        std::string sError;
        stConfig.bStreams = false;
        stConfig.fnNowMs = [this] { return vm_nNowMs.load(); };
        ASSERT_TRUE(vm_objRecorder.m_F_b_Start(stConfig, sError)) << sError;
    }
    stDef_ProbeReply m_F_o_Ask(const std::string& sRequest, const std::string& sUser = "admin")
    {
        return CProbe(vm_objRecorder.m_F_n_HttpPort(), CProbe::emDef_Auth::Basic, sUser, "Fl33t!ink")
            .m_F_o_Get("/rpb/" + sRequest);
    }
    std::string m_F_s_Body(const std::string& sRequest)
    {
        const stDef_ProbeReply stReply = m_F_o_Ask(sRequest);
        EXPECT_EQ(stReply.nStatus, 200) << sRequest;
        return stReply.sBody;
    }

    std::atomic<std::int64_t> vm_nNowMs{NowMs};
    CVirtualNvr vm_objRecorder;
};
} // namespace

TEST_F(Records, AnswerEachRequest)
{
    m_S_Start();
    for (const stDef_TableRow& row : ReadTable("record_requests.txt", 3)) {
        const stDef_ProbeReply stReply = m_F_o_Ask(row[0]);
        EXPECT_EQ(stReply.nStatus, row.Number(1)) << row.sWhere;
        if (!row[2].empty())
            EXPECT_EQ(stReply.sBody, row[2]) << row.sWhere;
    }
}

TEST_F(Records, OfAnEmbeddedRecorderAreAskedForByIndexDataAndImages)
{
    m_S_Start();
    const std::string sFolder = Escaped("/mnt/storage/disk2/VCH1/20261124/");
    const std::string sIndex = m_F_s_Body("file?name=" + sFolder + "second.idx&from=0&length=10000");
    ASSERT_EQ(sIndex.size(), 32u + 4 * 48);
    EXPECT_EQ(sIndex.substr(0, 24), std::string("\0\0RecordIdx\0#$\x23\xb7V\1\1\0\4\0\0\0", 24));
    EXPECT_EQ(sIndex.substr(32 + 2 * 48 + 16, 32), std::string("second-0020.img").append(17, '\0'));
    EXPECT_EQ(NumberAt(sIndex, 32 + 2 * 48, 8), static_cast<std::uint64_t>(FileMs));
    EXPECT_EQ(NumberAt(sIndex, 32 + 2 * 48 + 8, 8), static_cast<std::uint64_t>(FileMs + 10 * MinuteMs - 666));

    std::vector<stDef_Record> arRecords;
    for (const auto& [nFirst, nCount] : {std::pair(0, 400u), {400, 400u}, {800, 101u}, {901, 0u}}) {
        const auto arMore = RecordsOf(
            m_F_s_Body("dat?name=" + sFolder + "second-0020.dat&first=" + std::to_string(nFirst) + "&count=400"));
        EXPECT_EQ(arMore.size(), nCount);
        arRecords.insert(arRecords.end(), arMore.begin(), arMore.end());
    }
    ASSERT_EQ(arRecords.size(), 901u);
    EXPECT_EQ(arRecords[0].nMs, arRecords[1].nMs);
    EXPECT_EQ(arRecords[3].nMs, static_cast<std::uint64_t>(FileMs + 1334));
    EXPECT_EQ(arRecords[3].nPlace + arRecords[3].nLength, 0u);

    const Blocks arBlocks = BlocksOf(m_F_s_Body("img?name=" + sFolder + "second-0020.img&records=900,3,0,901,1"));
    const std::int64_t nGop = FileMs * 3 / 2000;
    EXPECT_EQ(arBlocks, Blocks({{900, Gop(1, true, nGop + 899)},
                                {3, Gop(1, true, nGop + 2)},
                                {0, Gop(1, true, nGop)},
                                {1, Gop(1, true, nGop)}}));
    EXPECT_EQ(BlocksOf(m_F_s_Body("img?name=" + sFolder + "second-0020.img&records=-1")),
              Blocks({{UINT32_MAX, "codec=H264 width=320 height=180 fps=15 frames=10\n"}}));
}

TEST_F(Records, GrowByWholeRecordsAndGoByWholeFiles)
{
    m_S_Start();
    const std::string sFolder = Escaped("/mnt/storage/disk1/ACH0/20261124/");
    const auto count = [&](const char* pszFile) {
        return RecordsOf(m_F_s_Body("dat?name=" + sFolder + pszFile + "&first=0&count=400")).size();
    };
    EXPECT_EQ(count("sound-0030.dat"), 10u);
    vm_nNowMs += 999;
    EXPECT_EQ(count("sound-0030.dat"), 10u);
    vm_nNowMs += 1;
    EXPECT_EQ(count("sound-0030.dat"), 11u);
    const std::string sOldest = "dat?name=" + sFolder + "sound-0000.dat&first=0&count=1";
    vm_nNowMs = FileMs - 10 * MinuteMs + HourMs;
    EXPECT_EQ(m_F_o_Ask(sOldest).nStatus, 200);
    vm_nNowMs += 1;
    EXPECT_EQ(m_F_o_Ask(sOldest).nStatus, 404);
}

TEST_F(Records, OfAPCRecorderAreWholeFilesWhosePlacesFit)
{
    m_S_Start({.bPC = true});
    EXPECT_EQ(m_F_s_Body("info?start=0&end=" + std::to_string(NowMs) + "&select=sa&channels=011"),
              "E:\\Record\\CH1\\20261123\\second.idx\nE:\\Record\\CH1\\20261124\\second.idx\n"
              "E:\\Record\\CH1\\20261123\\sound.idx\nE:\\Record\\CH1\\20261124\\sound.idx\n"
              "D:\\Record\\CH2\\20261123\\second.idx\nD:\\Record\\CH2\\20261124\\second.idx\n"
              "D:\\Record\\CH2\\20261123\\sound.idx\nD:\\Record\\CH2\\20261124\\sound.idx\n");
    const std::string sFile = Escaped("E:\\Record\\CH1\\20261124\\second-0020");
    const std::string sData = m_F_s_Body("file?name=" + sFile + ".dat&from=0&length=100000");
    EXPECT_EQ(sData.substr(0, 14), std::string("\1\0RecordDat\0#$", 14));
    EXPECT_EQ(m_F_s_Body("dat?name=" + sFile + ".dat&first=1&count=7"), sData.substr(32, 112));
    std::string sImages, sPiece;
    constexpr std::size_t nPiece = 50021; // ends within images
    do {
        sPiece = m_F_s_Body("file?name=" + sFile + ".img&from=" + std::to_string(sImages.size()) +
                            "&length=" + std::to_string(nPiece));
        sImages += sPiece;
    } while (sPiece.size() == nPiece);
    EXPECT_EQ(sImages.substr(2, 14), std::string("RecordImg\0#$", 12) + sImages.substr(14, 2));

    const std::vector<stDef_Record> arRecords = RecordsOf(sData, 16);
    ASSERT_EQ(arRecords.size(), 901u);
    std::uint64_t nPlace = sImages.find('\n') + 1;
    EXPECT_EQ(std::tie(arRecords[0].nMs, arRecords[0].nPlace, arRecords[0].nLength),
              std::tie(arRecords[1].nMs, nPlace, arRecords[1].nLength));
    for (std::size_t n = 1; n < arRecords.size(); nPlace += arRecords[n++].nLength) {
        ASSERT_EQ(arRecords[n].nPlace, nPlace) << n;
        ASSERT_TRUE(sImages.substr(nPlace, arRecords[n].nLength) ==
                    Gop(1, true, FileMs * 3 / 2000 + static_cast<std::int64_t>(n) - 1))
            << n;
    }
    EXPECT_EQ(nPlace, sImages.size());
}

TEST_F(Records, AreForAccountsThatMayPlayThemBack)
{
    m_S_Start({.arAccounts = {{"admin", "Fl33t!ink"}, {"guard", "Fl33t!ink", "1111", "01"}}});
    EXPECT_EQ(m_F_o_Ask("info?start=" + std::to_string(NowMs - MinuteMs) + "&end=" + std::to_string(NowMs) +
                            "&select=a&channels=1111",
                        "guard")
                  .sBody,
              "ImgVer=0\nDatVer=1\n/mnt/storage/disk2/ACH1/20261124/sound.idx\n");
    const std::pair<const char*, long> arStatus[] = {{"disk1/ACH0", 403}, {"disk2/ACH1", 200}, {"disk1/ACH2", 403}};
    for (const auto& [pszFolder, nStatus] : arStatus)
        for (const char* pszAsked : {"file?from=0&length=9&name=%s.idx", "dat?first=0&count=9&name=%s-0020.dat",
                                     "img?records=1&name=%s-0020.img"}) {
            char szTarget[200];
            std::snprintf(szTarget, sizeof szTarget, pszAsked,
                          (std::string("/mnt/storage/") + pszFolder + "/20261124/sound").c_str());
            EXPECT_EQ(m_F_o_Ask(szTarget, "guard").nStatus, nStatus) << szTarget;
        }
    EXPECT_EQ(m_F_o_Ask("info?start=0&end=9", "nobody").nStatus, 401);
}

TEST_F(Records, LieAsTheyAreTold)
{
    m_S_Start();
    using Text = std::string;
    const Text sFile = "name=/mnt/storage/disk1/TCH0/20261124/events-0000.";
    const Text sInfo = "info?start=0&end=9999999999999&select=t&channels=1",
               sDat = "dat?first=0&count=5&" + sFile + "dat", sImg = "img?records=2,3&" + sFile + "img",
               sIdx = "file?from=0&length=9999&name=/mnt/storage/disk1/TCH0/20261124/events.idx";
    const std::size_t nLast = 9 + NumberAt(m_F_s_Body(sImg), 4, 4); // where the last block begins
    const std::tuple<Text, Text, std::function<Text(Text)>> arRows[] = {
        {"new-dat-version", sInfo, [](Text s) { return s.replace(16, 1, "2"); }},
        {"new-img-version:7", sInfo, [](Text s) { return s.replace(7, 1, "7"); }},
        {"no-versions", sInfo, [](Text s) { return s.substr(18); }},
        {"hostile-list:3", sInfo, [](Text s) { return s.insert(18, "/mnt/storage/disk1/VCH0//evil.idx\n"); }},
        {"hostile-index:6", sIdx,
         [](Text s) {
             const Text sRest = s.substr(32, 16) + Text("..").append(30, '\0') + s.substr(32);
             return s.substr(0, 20) + static_cast<char>(s[20] + 1) + s.substr(21, 3) + "\xfa\xd7" + s.substr(26, 6) +
                    sRest;
         }},
        {"garbage-index", sIdx, [](Text s) { return s; }}, // no more than its length is told
        {"odd-data", sDat, [](Text s) { return s.substr(0, 75); }},
        {"short-data:2", sDat, [](Text s) { return s.substr(0, 32); }},
        {"double-data", sDat, [](Text s) { return s + s; }},
        {"other-data:1", sDat,
         [](Text s) {
             for (std::size_t n = 0; n < s.size(); n += 16)
                 ++s[n];
             return s;
         }},
        {"cut-block:3", sImg, [](Text s) { return s.substr(0, s.size() - 3); }},
        {"long-block", sImg, [=](Text s) { return ++s[nLast + 4], s; }},
        {"wrong-number:2", sImg, [=](Text s) { return s.replace(nLast, 1, "\5"); }},
        {"same-number", sImg, [=](Text s) { return s + s.substr(nLast); }},
        {"empty-image", sImg, [=](Text s) { return s.substr(0, nLast) + Text("\3\0\0\0\0\0\0\0\0", 9); }},
    };
    EXPECT_EQ(std::size(arRows), nsRecordFaults::Kinds().size());
    EXPECT_EQ(m_F_o_Ask("dat?name=/../evil.dat&first=0&count=1").nStatus, 404);
    for (const auto& [sFault, sRequest, fnSpoilt] : arRows) {
        SCOPED_TRACE(sFault);
        const Text sTrue = m_F_s_Body(sRequest);
        EXPECT_TRUE(vm_objRecorder.m_F_o_RecordFaults().m_F_b_Parse("*=" + sFault + "x1"));
        const Text sSpoilt = m_F_s_Body(sRequest), sExpected = fnSpoilt(sTrue);
        EXPECT_NE(sSpoilt, sTrue);
        if (sFault == "garbage-index")
            EXPECT_EQ(sSpoilt.size(), sExpected.size());
        else
            EXPECT_EQ(sSpoilt, sExpected);
        EXPECT_EQ(m_F_s_Body(sRequest), sTrue) << "played too often";
    }
    EXPECT_EQ(RecordsOf(m_F_s_Body("dat?name=/../evil.dat&first=0&count=9")).size(), 9u)
        << "names that were told lead nowhere";
    EXPECT_EQ(BlocksOf(m_F_s_Body("img?name=/../evil.img&records=-1")).size(), 1u);
}
