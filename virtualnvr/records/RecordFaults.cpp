#include "records/RecordFaults.h"

#include "records/RecordForms.h"

#include <algorithm>
#include <iterator>

namespace {
using namespace std::string_view_literals;

// Behind the folder of a channel. The slashes are those of the recorder's kind.
constexpr std::string_view g_arHostileTails[] = {
    "/../evil.idx"sv,
    "/20261124/.."sv,
    "//evil.idx"sv,
    "/./evil.idx"sv,
    "/2026:1124/e.idx"sv,
    "/20261124/ev:il.idx"sv,
    "/20261124/e\0vil.idx"sv,
    "/../../../../../tmp/evil.idx"sv,
    "/..\\..\\/evil.idx"sv,
    "/20261124/..\\evil.idx"sv,
    "/20261124/../../evil.idx"sv,
};
constexpr std::string_view g_arHostileWholes[][2] = {
    // embedded, PC
    {"/mnt/storage/disk1/../../evil.idx", "D:\\Record\\CH0\\..\\..\\..\\evil.idx"},
    {"/mnt/storage/../VCH0/20261124/evil.idx", "..\\CH0\\20261124\\evil.idx"},
    {"/mnt/storage//VCH0/20261124/evil.idx", "\\\\host\\share\\CH0\\20261124\\evil.idx"},
    {"/etc/evil.idx", "/CH0\\CH0\\evil.idx"},
    {"evil.idx", "\\CH0"},
};
constexpr std::string_view g_arHostileNames[] = {"../../evil.img"sv,
                                                 "/tmp/evil.img"sv,
                                                 "a/evil.img"sv,
                                                 "..\\..\\evil.img"sv,
                                                 "C:evil.img"sv,
                                                 ".."sv,
                                                 "."sv,
                                                 ""sv,
                                                 ".evil.img"sv,
                                                 "evil\0/../../x.img"sv,
                                                 "ev il.img"sv,
                                                 "name-of-32-signs-without-a-zero-.img"sv};
constexpr std::size_t g_nIndexHead = 32, g_nIndexEntry = 48, g_nTimes = 16;

struct stDef_Play
{
    const stDef_Fault& stFault;
    bool bPC;
    std::string& sBody;
};

/// Of a list those that the argument chooses: its n-th from 1, or all.
bool Chosen(const stDef_Play& st, std::size_t nPlace)
{
    return st.stFault.nArg == 0 || st.stFault.nArg == static_cast<long>(nPlace) + 1;
}

void ReplaceLine(std::string& sText, std::string_view sKey, const std::string& sLine)
{
    const std::size_t nBegin = sText.find(sKey);
    if (nBegin != std::string::npos)
        sText.replace(nBegin, sText.find('\n', nBegin) + 1 - nBegin, sLine);
}

/// Where the lines behind the versions begin.
std::size_t PathsBegin(const stDef_Play& st)
{
    const std::size_t nVersion = st.sBody.find("DatVer=");
    return nVersion == std::string::npos ? 0 : st.sBody.find('\n', nVersion) + 1;
}

void ListHostilePaths(const stDef_Play& st)
{
    std::string sLines;
    std::size_t nPlace = 0;
    for (const std::string_view sTail : g_arHostileTails) {
        std::string sPath = st.bPC ? "D:/Record/CH0" : "/mnt/storage/disk1/VCH0";
        sPath += sTail;
        if (st.bPC)
            std::replace(sPath.begin(), sPath.end(), '/', '\\');
        if (Chosen(st, nPlace++))
            sLines += sPath + "\n";
    }
    for (const auto& arPaths : g_arHostileWholes)
        if (Chosen(st, nPlace++))
            sLines += std::string(arPaths[st.bPC ? 1 : 0]) + "\n";
    st.sBody.insert(PathsBegin(st), sLines);
}

void NameHostileFiles(const stDef_Play& st)
{
    if (st.sBody.size() < g_nIndexHead + g_nIndexEntry)
        return;
    const std::string sTimes = st.sBody.substr(g_nIndexHead, g_nTimes);
    std::string sEntries;
    for (std::size_t n = 0; n < std::size(g_arHostileNames); ++n) {
        if (!Chosen(st, n))
            continue;
        std::string sName(g_arHostileNames[n]);
        sName.resize(nsRecordForms::MaxName, '\0');
        sEntries += sTimes + sName;
    }
    sEntries += st.sBody.substr(g_nIndexHead);
    std::string sCounted;
    nsRecordForms::Append(sCounted, sEntries.size() / g_nIndexEntry, 4);
    nsRecordForms::Append(sCounted, nsRecordForms::Checksum(sEntries), 2);
    st.sBody.replace(g_nIndexHead - 12, sCounted.size(), sCounted);
    st.sBody.replace(g_nIndexHead, std::string::npos, sEntries);
}

void MakeGarbage(const stDef_Play& st)
{
    unsigned nValue = 1;
    for (char& c : st.sBody) {
        nValue = nValue * 1103515245U + 12345U;
        c = static_cast<char>(nValue >> 16 & 0xff);
    }
}

struct stDef_Block
{
    std::size_t nBegin, nLength; ///< of the whole block
};

std::uint32_t NumberAt(const std::string& s, std::size_t nAt)
{
    std::uint32_t nNumber = 0;
    for (std::size_t n = 4; n-- > 0;)
        nNumber = nNumber << 8 | static_cast<unsigned char>(s[nAt + n]);
    return nNumber;
}

void SetNumber(std::string& s, std::size_t nAt, std::uint64_t nNumber)
{
    std::string sNumber;
    nsRecordForms::Append(sNumber, nNumber, 4);
    s.replace(nAt, sNumber.size(), sNumber);
}

/// The last block of a reply and, by reference, the greatest of the numbers; a length of 0 if the reply has no block.
stDef_Block LastBlock(const std::string& sBody, std::uint32_t& nGreatest)
{
    constexpr std::size_t nFrame = 9; // number, length, zero
    stDef_Block stBlock{0, 0};
    for (std::size_t nAt = 0; nAt + nFrame <= sBody.size(); nAt += stBlock.nLength) {
        stBlock = {nAt, nFrame + NumberAt(sBody, nAt + 4)};
        nGreatest = std::max(nGreatest, NumberAt(sBody, nAt));
    }
    return stBlock;
}

using Spoil = void (*)(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t nGreatest);

template <Spoil fnSpoil>
void OnLastBlock(const stDef_Play& st)
{
    std::uint32_t nGreatest = 0;
    const stDef_Block stLast = LastBlock(st.sBody, nGreatest);
    if (stLast.nLength > 0)
        fnSpoil(st, stLast, nGreatest);
}

void CutBlock(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t)
{
    st.sBody.resize(st.sBody.size() - std::min(static_cast<std::size_t>(st.stFault.nArg), stLast.nLength - 1));
}

void SetWrongNumber(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t nGreatest)
{
    SetNumber(st.sBody, stLast.nBegin, std::uint64_t(nGreatest) + static_cast<std::uint64_t>(st.stFault.nArg));
}

void SendTwice(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t)
{
    st.sBody += st.sBody.substr(stLast.nBegin);
}

void SetLongLength(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t)
{
    SetNumber(st.sBody, stLast.nBegin + 4,
              NumberAt(st.sBody, stLast.nBegin + 4) + static_cast<std::uint64_t>(st.stFault.nArg));
}

void EmptyBlock(const stDef_Play& st, const stDef_Block& stLast, std::uint32_t)
{
    SetNumber(st.sBody, stLast.nBegin + 4, 0);
    st.sBody.resize(stLast.nBegin + 8);
    st.sBody += '\0';
}

void DropEnd(const stDef_Play& st)
{
    st.sBody.resize(st.sBody.size() - std::min(static_cast<std::size_t>(st.stFault.nArg), st.sBody.size()));
}

void KeepRecords(const stDef_Play& st)
{
    st.sBody.resize(std::min(static_cast<std::size_t>(st.stFault.nArg) * nsRecordForms::RecordSize, st.sBody.size()));
}

void SendRecordsTwice(const stDef_Play& st)
{
    st.sBody += std::string(st.sBody);
}

/// The low four bytes do: a stamp's upper ones change once in 49 days.
void MoveStamps(const stDef_Play& st)
{
    for (std::size_t n = 0; n + nsRecordForms::RecordSize <= st.sBody.size(); n += nsRecordForms::RecordSize)
        SetNumber(st.sBody, n, NumberAt(st.sBody, n) + static_cast<std::uint64_t>(st.stFault.nArg));
}

struct stDef_Row
{
    stDef_FaultKind stKind;
    std::string_view sReply;
    void (*fnPlay)(const stDef_Play& st);
    bool bHostileNames = false;
};

constexpr auto OnReply = stDef_FaultKind::emDef_When::OnReply;
constexpr long g_nPaths = std::size(g_arHostileTails) + std::size(g_arHostileWholes);
constexpr long g_nNames = std::size(g_arHostileNames);

const stDef_Row g_arRows[] = {
    {{"new-dat-version", OnReply, {2, 2, 30000}, "tells another version of data files (arg, 2)"},
     "info",
     [](const stDef_Play& st) {
         ReplaceLine(st.sBody, "DatVer=", "DatVer=" + std::to_string(st.stFault.nArg) + "\n");
     }},
    {{"new-img-version", OnReply, {1, 1, 30000}, "tells another version of image files (arg, 1)"},
     "info",
     [](const stDef_Play& st) {
         ReplaceLine(st.sBody, "ImgVer=", "ImgVer=" + std::to_string(st.stFault.nArg) + "\n");
     }},
    {{"no-versions", OnReply, {}, "leaves out the version lines"},
     "info",
     [](const stDef_Play& st) {
         ReplaceLine(st.sBody, "DatVer=", "");
         ReplaceLine(st.sBody, "ImgVer=", "");
     }},
    {{"hostile-list", OnReply, {0, 0, g_nPaths}, "lists paths that lead elsewhere (arg: which, all)"},
     "info",
     ListHostilePaths,
     true},
    {{"hostile-index", OnReply, {0, 0, g_nNames}, "names files elsewhere in an index (arg: which, all)"},
     "index",
     NameHostileFiles,
     true},
    {{"garbage-index", OnReply, {}, "sends an index that is none"}, "index", MakeGarbage},
    {{"odd-data", OnReply, {5, 1, 15}, "cuts the last data record (arg: bytes, 5)"}, "dat", DropEnd},
    {{"short-data", OnReply, {399, 1, 400}, "sends fewer data records (arg, 399)"}, "dat", KeepRecords},
    {{"double-data", OnReply, {}, "sends all data records twice"}, "dat", SendRecordsTwice},
    {{"other-data", OnReply, {1000, 1, 100000000}, "moves time stamps (arg: ms, 1000)"}, "dat", MoveStamps},
    {{"cut-block", OnReply, {1, 1, 1L << 30}, "cuts the last image's block (arg: bytes, 1)"},
     "img",
     OnLastBlock<CutBlock>},
    {{"long-block", OnReply, {1, 1, 0xf0000000}, "tells the last image longer than it is (arg: bytes, 1)"},
     "img",
     OnLastBlock<SetLongLength>},
    {{"wrong-number", OnReply, {1, 1, 1L << 30}, "sends an image not asked for (arg: so far beyond, 1)"},
     "img",
     OnLastBlock<SetWrongNumber>},
    {{"same-number", OnReply, {}, "sends the last image twice"}, "img", OnLastBlock<SendTwice>},
    {{"empty-image", OnReply, {}, "sends the last image without a byte"}, "img", OnLastBlock<EmptyBlock>},
};
} // namespace

const std::vector<stDef_FaultKind>& nsRecordFaults::Kinds()
{
    static const std::vector<stDef_FaultKind> s_arKinds = [] {
        std::vector<stDef_FaultKind> arKinds;
        for (const stDef_Row& stRow : g_arRows)
            arKinds.push_back(stRow.stKind);
        return arKinds;
    }();
    return s_arKinds;
}

bool nsRecordFaults::Play(CFaultTable& objFaults, const std::string& sTarget, std::string_view sReply, bool bPC,
                          std::string& sBody)
{
    bool bHostileNames = false;
    for (const stDef_Row& stRow : g_arRows) {
        const auto fault = stRow.sReply == sReply ? objFaults.m_F_o_Take(sTarget, stRow.stKind.sName) : std::nullopt;
        if (!fault)
            continue;
        stRow.fnPlay({*fault, bPC, sBody});
        bHostileNames = bHostileNames || stRow.bHostileNames;
    }
    return bHostileNames;
}
