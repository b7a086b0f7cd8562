#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/Table.h"

// Which way includes may point, and where the headers of other libraries may stand.

namespace {

namespace fs = std::filesystem;

struct stDef_Include
{
    std::string sFrom; ///< path below the source folder, as "src/core/CWndNvrBase.cpp"
    std::string sTo;   ///< as it is written
    bool bQuoted;
};

/// What an include names, with its opening sign before it; empty for any other line.
std::string Included(const std::string& sLine)
{
    const std::size_t nHash = sLine.find_first_not_of(" \t");
    const std::size_t nOpen = sLine.find_first_of("\"<");
    if (nHash == std::string::npos || nOpen == std::string::npos || sLine[nHash] != '#' ||
        sLine.substr(nHash, nOpen - nHash).find("include") == std::string::npos)
        return {};
    return sLine.substr(nOpen, sLine.find_first_of("\">", nOpen + 1) - nOpen);
}

std::vector<stDef_Include> IncludesOf(const std::string& sFolder)
{
    std::vector<stDef_Include> arIncludes;
    for (const auto& entry : fs::recursive_directory_iterator(SOURCE_FOLDER + ("/" + sFolder))) {
        if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp")
            continue;
        std::ifstream file(entry.path());
        for (std::string sLine; std::getline(file, sLine);) {
            if (const std::string sName = Included(sLine); !sName.empty())
                arIncludes.push_back(
                    {fs::relative(entry.path(), SOURCE_FOLDER).string(), sName.substr(1), sName[0] == '"'});
        }
    }
    EXPECT_FALSE(arIncludes.empty()) << sFolder;
    return arIncludes;
}

std::string FirstFolder(const std::string& sPath)
{
    return sPath.substr(0, sPath.find('/'));
}

// Folders of one floor don't know each other.
const std::map<std::string, int> g_mapFloors = {
    {"host", 1},      {"toolkit", 2}, {"widgets", 2}, {"core", 3},       {"drivers", 4},
    {"parameter", 5}, {"motion", 5},  {"setup", 6},   {"management", 6}, {"remote", 6},
};

TEST(House, IncludesPointDown)
{
    for (const stDef_Include& st : IncludesOf("src")) {
        const std::string sFrom = FirstFolder(st.sFrom.substr(4)), sTo = FirstFolder(st.sTo);
        if (sFrom == "fleetlink" || !st.bQuoted) // the one include of a host names every floor
            continue;
        ASSERT_TRUE(g_mapFloors.contains(sFrom) && g_mapFloors.contains(sTo)) << st.sFrom << " includes " << st.sTo;
        EXPECT_TRUE(sFrom == sTo || g_mapFloors.at(sTo) < g_mapFloors.at(sFrom)) << st.sFrom << " includes " << st.sTo;
    }
}

// What pages share stands beside the sheet.
TEST(House, PagesDoNotKnowEachOther)
{
    const auto Room = [](const std::string& sPath) {
        const auto nSlash = sPath.find('/');
        return nSlash == std::string::npos ? std::string() : sPath.substr(0, nSlash);
    };
    for (const stDef_Include& st : IncludesOf("src/setup")) {
        if (!st.sTo.starts_with("setup/"))
            continue;
        const std::string sFrom = Room(st.sFrom.substr(10)), sTo = Room(st.sTo.substr(6));
        EXPECT_TRUE(sFrom.empty() || sTo.empty() || sFrom == sTo) << st.sFrom << " includes " << st.sTo;
    }
}

TEST(House, TheToolkitKnowsNoRecorder)
{
    const std::set<std::string> setOfHost = {"host/Export.h", "host/Lib_Bedrock.h"};
    for (const stDef_Include& st : IncludesOf("src/toolkit"))
        EXPECT_TRUE(FirstFolder(st.sTo) != "host" || setOfHost.contains(st.sTo)) << st.sFrom << " includes " << st.sTo;
}

TEST(House, TheHostHasOneInclude)
{
    for (const stDef_Include& st : IncludesOf("client"))
        EXPECT_FALSE(st.bQuoted && g_mapFloors.contains(FirstFolder(st.sTo))) << st.sFrom << " includes " << st.sTo;
}

TEST(House, TheVirtualRecorderStandsApart)
{
    for (const stDef_Include& st : IncludesOf("virtualnvr"))
        EXPECT_TRUE(!g_mapFloors.contains(FirstFolder(st.sTo)) && !st.sTo.starts_with("Q"))
            << st.sFrom << " includes " << st.sTo;
}

TEST(House, OtherLibrariesStandBehindOneClass)
{
    const auto arRows = ReadTable("libraries.txt", 4);
    for (const char* pszFolder : {"src", "client", "virtualnvr"}) {
        for (const stDef_Include& st : IncludesOf(pszFolder)) {
            for (const stDef_TableRow& row : arRows) {
                if (!st.sTo.starts_with(row[0]))
                    continue;
                EXPECT_TRUE(std::any_of(row.arFields.begin() + 1, row.arFields.end(),
                                        [&st](const auto& s) { return !s.empty() && st.sFrom.find(s) != s.npos; }))
                    << st.sFrom << " includes " << st.sTo;
                EXPECT_FALSE(st.sFrom.starts_with("src/") && st.sFrom.ends_with(".h"))
                    << "a contract that shows " << st.sTo << ": " << st.sFrom;
            }
        }
    }
}

} // namespace
