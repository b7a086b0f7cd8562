#include "records/stDef_RecordPath.h"

#include "http/NumberText.h"
#include "records/RecordClock.h"

#include <algorithm>
#include <array>

namespace {
constexpr const char* g_arExtensions[] = {".idx", ".img", ".dat"};
constexpr const char* g_arEmbeddedDisks[] = {"/mnt/storage/disk1/", "/mnt/storage/disk2/"};
constexpr const char* g_arPCDisks[] = {"D:\\Record\\", "E:\\Record\\"};
constexpr std::size_t g_nHourWidth = 4;

/// The number that a text of digits alone says; -1 for any other.
int Number(std::string_view s)
{
    int n = -1;
    return ParseNumber(s, n) ? n : -1;
}

/// The last three parts of a path, the last one last; of fewer the first ones are empty.
std::array<std::string_view, 3> LastParts(std::string_view sPath, char cSlash)
{
    std::array<std::string_view, 3> arParts;
    for (auto it = arParts.rbegin(); it != arParts.rend(); ++it) {
        const std::size_t nSlash = sPath.rfind(cSlash);
        *it = sPath.substr(nSlash + 1);
        sPath = sPath.substr(0, nSlash == std::string_view::npos ? 0 : nSlash);
    }
    return arParts;
}
} // namespace

std::string stDef_RecordPath::m_F_s_FileName() const
{
    std::string sName = g_arRecordKinds[static_cast<std::size_t>(eKind)].pszName;
    if (eFile != emDef_RecordFile::Index)
        sName += "-" + nsRecordClock::Hour(nBeginMs);
    return sName + g_arExtensions[static_cast<std::size_t>(eFile)];
}

std::string stDef_RecordPath::m_F_s_Text(bool bPC) const
{
    const std::string sSlash = bPC ? "\\" : "/";
    const char* pszFolder = bPC ? "CH" : g_arRecordKinds[static_cast<std::size_t>(eKind)].pszFolder;
    const auto nDisk = static_cast<std::size_t>(nChannel) % 2;
    return (bPC ? g_arPCDisks : g_arEmbeddedDisks)[nDisk] + (pszFolder + std::to_string(nChannel)) + sSlash +
           nsRecordClock::Day(nBeginMs) + sSlash + m_F_s_FileName();
}

// What is read is written again and compared: so no other spelling of a path means the same file.
std::optional<stDef_RecordPath> stDef_RecordPath::s_F_o_Parse(std::string_view sPath, bool bPC)
{
    const auto [sFolder, sDay, sFile] = LastParts(sPath, bPC ? '\\' : '/');
    const auto nDayMs = nsRecordClock::DayBegin(sDay);
    const int nChannel = Number(sFolder.substr(std::min(sFolder.rfind('H') + 1, sFolder.size())));
    if (!nDayMs || nChannel < 0)
        return std::nullopt;
    const std::size_t nHour = std::min(sFile.find('-') + 1, sFile.size());
    const int nTime = nHour > 0 ? Number(sFile.substr(nHour, g_nHourWidth)) : 0;
    if (nTime < 0)
        return std::nullopt;
    const std::int64_t nBeginMs = *nDayMs + (nTime / 100 * 60 + nTime % 100) * std::int64_t(60000);
    for (const stDef_RecordKindRow& stRow : g_arRecordKinds)
        for (const emDef_RecordFile eFile :
             {emDef_RecordFile::Index, emDef_RecordFile::Image, emDef_RecordFile::Data}) {
            const stDef_RecordPath stPath{nChannel, stRow.eKind, eFile, nBeginMs};
            if (sFile.starts_with(stRow.pszName) && stPath.m_F_s_Text(bPC) == sPath)
                return stPath;
        }
    return std::nullopt;
}
