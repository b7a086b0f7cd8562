#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "host/bedrock/CMultipartReader.h"
#include "support/Table.h"

namespace {

using Parts = std::vector<std::string>;

constexpr const char* Plain = "multipart/x-mixed-replace; boundary=frame";

Parts Taken(CMultipartReader& reader)
{
    Parts arParts;
    for (std::string sPart; reader.m_F_b_Pop(sPart);)
        arParts.push_back(sPart);
    return arParts;
}

Parts Read(const std::string& sType, const std::string& sStream, std::size_t nStep)
{
    CMultipartReader reader;
    reader.m_S_Begin(sType);
    for (std::size_t n = 0; n < sStream.size(); n += nStep)
        reader.m_S_Feed(sStream.data() + n, std::min(nStep, sStream.size() - n));
    reader.m_S_End();
    return Taken(reader);
}

std::string Part(const std::string& sBody, const std::string& sHead = {})
{
    return "--frame\r\nContent-Type: text/plain\r\n" + sHead + "\r\n" + sBody + "\r\n";
}

std::string Counted(const std::string& sBody, const std::string& sLength)
{
    return Part(sBody, "Content-Length: " + sLength + "\r\n");
}

/// With its parts written out: "{body}", or "{body length}".
std::string WrittenOut(std::string sStream)
{
    for (std::size_t n = sStream.find('{'); n != sStream.npos; n = sStream.find('{')) {
        const std::size_t nLength = sStream.find('}', n) - n + 1;
        const std::string sPart = sStream.substr(n + 1, nLength - 2);
        const std::size_t nBlank = std::min(sPart.find(' '), sPart.size());
        const std::string sBody = sPart.substr(0, nBlank);
        sStream.replace(n, nLength, nBlank < sPart.size() ? Counted(sBody, sPart.substr(nBlank + 1)) : Part(sBody));
    }
    return sStream;
}

TEST(Multipart, TakesStreamsApartHoweverTheyCome)
{
    for (const stDef_TableRow& row : ReadTable("multipart.txt", 5)) {
        const std::string sStream = WrittenOut(row[2]);
        Parts arParts = {row[3], row[4]};
        std::erase(arParts, "");
        for (const std::size_t nStep : {std::size_t(1), std::size_t(2), std::size_t(7), sStream.size() + 1})
            EXPECT_EQ(Read(row[1] == "*" ? Plain : row[1], sStream, nStep), arParts)
                << row[0] << ", " << nStep << " at a time";
    }
}

TEST(Multipart, GivesACountedPartWithItsLastByte)
{
    CMultipartReader reader;
    reader.m_S_Begin(Plain);
    const std::string sStream = Counted("one", "3");
    reader.m_S_Feed(sStream.data(), sStream.size() - 3);
    EXPECT_EQ(Taken(reader), Parts()) << "a byte is missing";
    reader.m_S_Feed("e", 1);
    EXPECT_EQ(Taken(reader), Parts{"one"});
}

TEST(Multipart, DropsWhatIsTooLargeAndReadsOn)
{
    const std::string sLine(3u << 20, 'x'), sLines = sLine + "\r\n" + sLine;
    const std::string sHead = "A: " + std::string(CMultipartReader::MaxHead, 'x') + "\r\n";
    const std::string arLarge[] = {
        std::string("preamble ") + sLines + "\r\n",     Part(sLines),       Part(sLine + sLine),
        Counted(sLines, std::to_string(sLines.size())), Part("one", sHead), Part("one", sHead + sHead)};
    for (const std::string& sLarge : arLarge)
        for (const std::size_t nStep : {std::size_t(1000), std::size_t(100000000)})
            EXPECT_EQ(Read(Plain, sLarge + Part("good") + "--frame--", nStep), Parts{"good"})
                << sLarge.substr(0, 60) << ", " << nStep << " at a time";
    EXPECT_EQ(Read("text/plain", sLines, 1000), Parts());
}

TEST(Multipart, KeepsTheNewestOfTooMany)
{
    std::string sStream;
    for (int i = 0; i < 1000; ++i)
        sStream += Part(std::to_string(i));
    const Parts arParts = Read(Plain, sStream + "--frame--", 100);
    ASSERT_EQ(arParts.size(), CMultipartReader::MaxQueued);
    EXPECT_EQ(arParts.front(), "936");
    EXPECT_EQ(arParts.back(), "999");

    sStream.clear();
    for (int i = 0; i < 6; ++i)
        sStream += Part(std::string(3u << 20, static_cast<char>('a' + i)));
    const Parts arLarge = Read(Plain, sStream + "--frame--", 65536);
    ASSERT_EQ(arLarge.size(), 2U) << "as many as fit into MaxQueuedBytes";
    EXPECT_EQ(arLarge.back()[0], 'f');
}

TEST(Multipart, LooksAtEachByteOnce)
{
    const auto nBegin = std::chrono::steady_clock::now();
    const std::string sBody(CMultipartReader::MaxPart, 'x');
    EXPECT_EQ(Read(Plain, Counted(sBody, std::to_string(sBody.size())) + Part(sBody) + "--frame--", 64).size(), 2U);
    EXPECT_LT(std::chrono::steady_clock::now() - nBegin, std::chrono::seconds(3));
}

} // namespace
