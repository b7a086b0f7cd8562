#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <vector>

#include "host/bedrock/CFileRW.h"
#include "host/bedrock/CMemManage.h"
#include "host/bedrock/CSFunc.h"
#include "support/Files.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

TEST(MemManage, KeepsContentAndAClosingZero)
{
    CMemManage objMem(4);
    ASSERT_NE(objMem.m_F_p_GetMemPoint(), nullptr);
    EXPECT_EQ(objMem.m_F_n_GetMemSize(), 4u);
    std::memcpy(objMem.m_F_p_GetMemPoint(), "abcd", 4);
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "abcd");
    ASSERT_NE(objMem.m_F_p_MemAlloc(8), nullptr);
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "abcd") << "new bytes are zero";
    EXPECT_TRUE(objMem.m_F_b_Append("efgh", 4));
    EXPECT_EQ(objMem.m_F_n_GetMemSize(), 12u);
    EXPECT_EQ(std::memcmp(objMem.m_F_p_GetMemPoint(), "abcd\0\0\0\0efgh", 13), 0);

    ASSERT_TRUE(objMem.m_F_p_MemAlloc(2) && objMem.m_F_p_MemAlloc(8));
    EXPECT_EQ(std::memcmp(objMem.m_F_p_GetMemPoint(), "ab\0\0\0\0\0\0", 9), 0);

    EXPECT_TRUE(objMem.m_F_b_SetContent("xy", 2));
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "xy");
    EXPECT_TRUE(objMem.m_F_b_SetContent(nullptr, 0));
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "");
    ASSERT_NE(objMem.m_F_p_MemAlloc(13), nullptr);
    objMem.m_S_ZeroMem();
    EXPECT_EQ(std::memcmp(objMem.m_F_p_GetMemPoint(), std::string(13, '\0').data(), 13), 0);
    EXPECT_EQ(objMem.m_F_n_GetMemSize(), 13u);

    objMem.m_S_DelMem();
    EXPECT_EQ(objMem.m_F_p_GetMemPoint(), nullptr);
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "");
    std::string sAll;
    for (int i = 0; i < 1000; ++i) {
        const std::string sPart = std::to_string(i);
        sAll += sPart;
        ASSERT_TRUE(objMem.m_F_b_Append(sPart.data(), sPart.size()));
    }
    EXPECT_EQ(sAll, objMem.m_F_p_GetStrCHAR());
    objMem.m_S_Clear();
    EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "");
    EXPECT_NE(objMem.m_F_p_GetMemPoint(), nullptr);
    ASSERT_NE(objMem.m_F_p_MemAlloc((1 << 20) + 1), nullptr);
    objMem.m_S_Clear();
    EXPECT_EQ(objMem.m_F_p_GetMemPoint(), nullptr) << "beyond 1 MiB it goes back";
}

TEST(MemManage, AbsurdSizesLeaveItEmpty)
{
    for (const std::uint64_t nSize : {UINT64_MAX, UINT64_MAX - 1, std::uint64_t(INT64_MAX), std::uint64_t(1) << 62}) {
        CMemManage objMem(3);
        EXPECT_EQ(objMem.m_F_p_MemAlloc(nSize), nullptr);
        EXPECT_EQ(objMem.m_F_n_GetMemSize(), 0u);
        EXPECT_STREQ(objMem.m_F_p_GetStrCHAR(), "");
        ASSERT_TRUE(objMem.m_F_b_SetContent("ok", 2));
        EXPECT_FALSE(objMem.m_F_b_Append("x", nSize));
        EXPECT_EQ(objMem.m_F_n_GetMemSize(), 0u);
    }
}

TEST(FileRW, OpensByType)
{
    QTemporaryDir objFolder;
    const QString sPath = objFolder.filePath(u"收銀台.dat"_s);
    char arBuffer[8] = {};
    CFileRW objFile({}, CFileRW::OpenType_Read);
    EXPECT_EQ(objFile.m_F_n_Read(arBuffer, 8), 0u);
    EXPECT_EQ(objFile.m_F_n_Open(sPath, CFileRW::OpenType_Read), 0);
    ASSERT_EQ(objFile.m_F_n_Open(sPath, CFileRW::OpenType_Write), 1);
    EXPECT_EQ(objFile.write("abcdef"), 6);
    EXPECT_EQ(objFile.m_F_n_Read(arBuffer, 8), 0u);
    ASSERT_EQ(objFile.m_F_n_Open(sPath, CFileRW::OpenType_Read), 1);
    EXPECT_EQ(objFile.m_F_n_Read(arBuffer, 4), 4u);
    EXPECT_EQ(objFile.m_F_n_Read(arBuffer + 4, 4), 2u);
    EXPECT_STREQ(arBuffer, "abcdef");
    EXPECT_EQ(objFile.m_F_n_Read(arBuffer, 4), 0u);
    objFile.close();
    ASSERT_EQ(objFile.m_F_n_Open(sPath, CFileRW::OpenType_ReadWrite), 1);
    EXPECT_EQ(objFile.size(), 6);
    EXPECT_EQ(objFile.m_F_n_Open(objFolder.path(), CFileRW::OpenType_Read), 0);
}

TEST(Func, ConvertsText)
{
    const unsigned char arBytes[] = {0x00, 0x0A, 0xFF, 0x7B};
    EXPECT_EQ(CSFunc::s_F_s_ByteToHexStr(arBytes, 4), u"000AFF7B"_s);
    EXPECT_EQ(CSFunc::s_F_s_ByteToHexStr(arBytes, -1) + CSFunc::s_F_s_ByteToHexStr(nullptr, 4), QString());

    for (const stDef_TableRow& row : ReadTable("utf8.txt", 2))
        EXPECT_EQ(CSFunc::s_F_s_Utf8ToUnicode(QByteArray::fromStdString(row[0])).toStdString(), row[1]);
    EXPECT_EQ(CSFunc::s_F_s_UnicodeToUtf8(u"Café 🎥 \xD83C!"_s), "Caf\xC3\xA9 \xF0\x9F\x8E\xA5 \xEF\xBF\xBD!"_ba);
#ifndef _WIN32
    EXPECT_EQ(CSFunc::s_F_s_UnicodeToAnsi(u"p&ß€™台🎥\x81"_s), "p&\xDF\x80\x99???"_ba);
    EXPECT_EQ(CSFunc::s_F_s_AnsiToUnicode("p&\xDF\x80\x99\x81"_ba), u"p&ß€™\xFFFD"_s);
#endif
}

TEST(Func, MakesAndRemovesFolders)
{
    QTemporaryDir objFolder;
    const QString sOutside = objFolder.filePath(u"outside"_s);
    const QString sTree = objFolder.filePath(u"tree"_s);
    const QString sDeep = sTree + u"/a/b/c"_s;
    EXPECT_EQ(CSFunc::s_F_n_CreateDirectorys(sDeep), 1);
    EXPECT_EQ(CSFunc::s_F_n_CreateDirectorys(sDeep), 1);
    EXPECT_EQ(CSFunc::s_F_n_CreateDirectorys(u""_s), 0);
    EXPECT_EQ(CSFunc::s_F_n_CreateDirectorys(sOutside), 1);
    for (const QString& sName : {sOutside + u"/kept"_s, sDeep + u"/file"_s})
        WriteFile(sName, {});
    EXPECT_EQ(CSFunc::s_F_n_CreateDirectorys(sDeep + u"/file/x"_s), 0);
    std::filesystem::create_directory_symlink(sOutside.toStdString(), (sDeep + u"/link"_s).toStdString());

    EXPECT_EQ(CSFunc::s_F_n_RemoveDirectorys(sDeep + u"/file"_s), 0);
    EXPECT_TRUE(QFile::exists(sDeep + u"/file"_s));
    EXPECT_EQ(CSFunc::s_F_n_RemoveDirectorys(sDeep + u"/link/"_s), 1);
    EXPECT_EQ(CSFunc::s_F_n_RemoveDirectorys(sTree + u'/'), 1);
    EXPECT_FALSE(QFile::exists(sTree));
    EXPECT_EQ(CSFunc::s_F_n_RemoveDirectorys(sTree), 1);
    EXPECT_TRUE(QFile::exists(sOutside + u"/kept"_s));
}

// Asked by text alone: a guard that fails must not cost the folders of whoever runs this test.
TEST(Func, RefusesToRemoveWhatNobodyMeans)
{
    for (const QString& sPath :
         {u""_s, u" "_s, u"/"_s, u"//"_s, u"."_s, u".."_s, u"./"_s, u"..//"_s, u"/a/.."_s, u"a/./"_s})
        EXPECT_FALSE(CSFunc::s_F_b_MayRemove(sPath)) << qPrintable(sPath);
    for (const QString& sPath : {u"a"_s, u"/a"_s, u"/a/b/"_s, u"../a"_s, u"/a/..b"_s, u"./.a"_s})
        EXPECT_TRUE(CSFunc::s_F_b_MayRemove(sPath)) << qPrintable(sPath);
}

TEST(Func, TellsOfFiles)
{
    QTemporaryDir objFolder;
    QFile objFile(objFolder.filePath(u"Index 收.dat"_s));
    ASSERT_TRUE(objFile.open(QIODevice::WriteOnly) && objFile.resize(0x1'2345'6789));
    ASSERT_TRUE(objFile.setFileTime(QDateTime::fromMSecsSinceEpoch(1500, Qt::UTC), QFileDevice::FileModificationTime));
    WIN32_FIND_DATAW stInfo;
    std::memset(&stInfo, 0xEE, sizeof(stInfo));
    EXPECT_FALSE(CSFunc::s_F_b_GetFileInfo(objFolder.filePath(u"none"_s), &stInfo));
    EXPECT_EQ(stInfo.nFileSizeLow, 0xEEEEEEEE);
    ASSERT_TRUE(CSFunc::s_F_b_GetFileInfo(objFile.fileName(), &stInfo));
    EXPECT_EQ(stInfo.nFileSizeLow, 0x23456789u);
    EXPECT_EQ(stInfo.nFileSizeHigh, 1u);
    EXPECT_EQ((std::uint64_t(stInfo.ftLastWriteTime.dwHighDateTime) << 32) + stInfo.ftLastWriteTime.dwLowDateTime,
              116'444'736'015'000'000u);
    EXPECT_EQ(QString::fromUtf16(reinterpret_cast<const char16_t*>(stInfo.cFileName)), u"Index 收.dat"_s);
    ASSERT_TRUE(CSFunc::s_F_b_GetFileInfo(objFolder.path(), &stInfo));
    EXPECT_TRUE(stInfo.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
}

TEST(Func, CalendarAndCountAreInverses)
{
    std::mt19937_64 objRandom(7);
    constexpr quint64 nEnd = 910'670'515'199'999; // 30827-12-31 23:59:59.999
    for (int i = 0; i < 20'000; ++i) {
        const quint64 nTime = i == 0 ? 0 : i == 1 ? nEnd : objRandom() % (i % 2 ? nEnd : 4'102'444'800'000);
        SYSTEMTIME stTime;
        CSFunc::s_S_ChangeTimeType(nTime, stTime, nullptr);
        quint64 nBack = 1;
        CSFunc::s_S_ChangeTimeType(stTime, nBack);
        ASSERT_EQ(nBack, nTime);
        ASSERT_EQ(stTime.wDayOfWeek, (nTime / 86'400'000 + 4) % 7);
    }
    SYSTEMTIME stTime;
    CSFunc::s_S_ChangeTimeType(UINT64_MAX, stTime, nullptr);
    EXPECT_EQ(stTime.wYear, 30827);
    const SYSTEMTIME arBad[] = {{1969, 12, 0, 31, 23, 59, 59, 999}, {2023, 2, 0, 29, 0, 0, 0, 0},
                                {2024, 13, 0, 1, 0, 0, 0, 0},       {2024, 0, 0, 1, 0, 0, 0, 0},
                                {2024, 1, 0, 0, 0, 0, 0, 0},        {2024, 1, 0, 1, 24, 0, 0, 0},
                                {2024, 1, 0, 1, 0, 0, 0, 1000},     {65535, 1, 0, 1, 0, 0, 0, 0}};
    for (const SYSTEMTIME& stBad : arBad) {
        quint64 nTime = 1;
        CSFunc::s_S_ChangeTimeType(stBad, nTime);
        EXPECT_EQ(nTime, 0u) << stBad.wYear << '-' << stBad.wMonth << '-' << stBad.wDay;
    }
}

TEST(Func, LocalTimeFollowsTheZone)
{
    const SYSTEMTIME stNone{};
    const auto fnZone = [](int nBias, SYSTEMTIME stStandard, SYSTEMTIME stDaylight) {
        TIME_ZONE_INFORMATION stZone{};
        stZone.Bias = nBias;
        stZone.StandardDate = stStandard;
        stZone.DaylightDate = stDaylight;
        stZone.DaylightBias = -60;
        return stZone;
    };
    // Last Sundays of October and March; first Sundays of April and October.
    const auto stBerlin = fnZone(-60, {0, 10, 0, 5, 3, 0, 0, 0}, {0, 3, 0, 5, 2, 0, 0, 0});
    const auto stSydney = fnZone(-600, {0, 4, 0, 1, 3, 0, 0, 0}, {0, 10, 0, 1, 2, 0, 0, 0});
    const auto stTaipei = fnZone(-480, stNone, stNone);
    const auto stBroken = fnZone(300, {0, 13, 9, 7, 0, 0, 0, 0}, {0, 3, 0, 0, 0, 0, 0, 0});
    const auto stOnce = fnZone(0, {2024, 9, 0, 1, 0, 0, 0, 0}, {2024, 5, 0, 1, 0, 0, 0, 0});
    const std::map<std::string, TIME_ZONE_INFORMATION> mapZones = {
        {"Berlin", stBerlin}, {"Sydney", stSydney}, {"Taipei", stTaipei}, {"Broken", stBroken}, {"Once", stOnce}};
    for (const stDef_TableRow& row : ReadTable("zones.txt", 3)) {
        const qint64 nUtc = QDateTime::fromString(row[1].c_str(), Qt::ISODateWithMs).toMSecsSinceEpoch();
        quint64 nLocal = 0;
        SYSTEMTIME stLocal;
        CSFunc::s_S_ChangeTimeType(static_cast<quint64>(nUtc), stLocal, &mapZones.at(row[0]));
        CSFunc::s_S_ChangeTimeType(stLocal, nLocal);
        EXPECT_EQ((static_cast<qint64>(nLocal) - nUtc) / 60'000, row.Number(2)) << row.sWhere;
    }
    SYSTEMTIME stTime;
    CSFunc::s_S_ChangeTimeType(0, stTime, &stBroken);
    EXPECT_EQ(stTime.wYear, 1969);
}

TEST(Func, GridCellsCoverTheRectangle)
{
    for (const auto& [nColumns, nRows] : {std::pair{1, 1}, {2, 2}, {3, 3}, {4, 7}, {9, 2}}) {
        const stDef_Rect stOuter{-3, 5, 98, 69};
        std::vector<stDef_Rect> arCells(static_cast<std::size_t>(nColumns * nRows));
        CSFunc::s_S_CalWndRect(nColumns, nRows, arCells.data(), stOuter);
        for (int i = 0; i < nColumns * nRows; ++i) {
            const int nColumn = i % nColumns;
            const stDef_Rect& stCell = arCells[static_cast<std::size_t>(i)];
            EXPECT_EQ(stCell.left, nColumn ? arCells[static_cast<std::size_t>(i - 1)].right : stOuter.left);
            EXPECT_EQ(stCell.top, i >= nColumns ? arCells[static_cast<std::size_t>(i - nColumns)].bottom : stOuter.top);
            EXPECT_NEAR(stCell.m_F_n_Width(), 101.0 / nColumns, 1.0);
            EXPECT_NEAR(stCell.m_F_n_Height(), 64.0 / nRows, 1.0);
        }
        EXPECT_EQ(arCells.back().right, stOuter.right);
        EXPECT_EQ(arCells.back().bottom, stOuter.bottom);
    }
    stDef_Rect stUntouched{1, 2, 3, 4};
    CSFunc::s_S_CalWndRect(0, 1, &stUntouched, {0, 0, 9, 9});
    CSFunc::s_S_CalWndRect(1, -1, &stUntouched, {0, 0, 9, 9});
    CSFunc::s_S_CalWndRect(1, 1, nullptr, {0, 0, 9, 9});
    EXPECT_EQ(stUntouched, (stDef_Rect{1, 2, 3, 4}));
}

} // namespace
