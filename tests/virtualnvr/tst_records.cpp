#include "CProbe.h"
#include "CVirtualNvr.h"
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
