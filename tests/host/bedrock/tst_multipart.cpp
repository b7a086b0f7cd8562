#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "host/bedrock/CMultipartReader.h"

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

Parts Read(const char* pType, const std::string& sStream, std::size_t nStep)
{
    CMultipartReader reader;
    reader.m_S_Begin(pType);
    for (std::size_t n = 0; n < sStream.size(); n += nStep)
        reader.m_S_Feed(sStream.data() + n, std::min(nStep, sStream.size() - n));
    reader.m_S_End();
    return Taken(reader);
}

std::string Part(const std::string& sBody, const std::string& sHead = {})
{
    return "--frame\r\nContent-Type: text/plain\r\n" + sHead + "\r\n" + sBody + "\r\n";
}

std::string Counted(const std::string& sBody, std::size_t nLength)
{
    return Part(sBody, "Content-Length: " + std::to_string(nLength) + "\r\n");
}

TEST(Multipart, TakesStreamsApartHoweverTheyCome)
{
    const std::string sEnd = "--frame--\r\n";
    struct Row
    {
        const char* pWhat;
        const char* pType;
        std::string sStream;
        Parts arParts;
    };
    const Row arRows[] = {
        {"no stream", "text/xml", "<root/>", {"<root/>"}},
        {"no type", "", "abc", {"abc"}},
        {"no boundary", "multipart/mixed", "--frame\r\n", {"--frame\r\n"}},
        {"empty boundary", "multipart/mixed; boundary=\"\"", "abc", {"abc"}},
        {"without lengths", Plain, Part("one") + Part("two") + sEnd, {"one", "two"}},
        {"with lengths", Plain, Counted("one", 3) + Counted("two", 3) + sEnd, {"one", "two"}},
        {"open end", Plain, Counted("one", 3) + Counted("tw", 5), {"one"}},
        {"cut body", Plain, Part("one") + "--frame\r\n\r\ntw", {"one"}},
        {"closing without line end", Plain, Part("one") + "--frame--", {"one"}},
        {"quoted boundary", "Multipart/Mixed; charset=x; BOUNDARY=\"frame\"", Part("one") + sEnd, {"one"}},
        {"type behind it", "multipart/mixed;boundary=frame ; a=b", Part("one") + sEnd, {"one"}},
        {"dashes told in the type", "multipart/mixed; boundary=--frame", Part("one") + sEnd, {"one"}},
        {"dashes told twice", Plain, "----frame\r\n\r\none\r\n----frame--\r\n", {"one"}},
        {"no dashes", Plain, "frame\r\n\r\none\r\nframe--\r\n", {"one"}},
        {"bare line feeds", Plain, "--frame\nContent-Length: 3\n\none\n--frame\n\ntwo\n--frame--\n", {"one", "two"}},
        {"preamble", Plain, "\r\nhello\r\n--framed\r\n\r\n" + Part("one") + sEnd, {"one"}},
        {"epilogue", Plain, Part("one") + sEnd + "bye\r\n\r\nand more\r\n", {"one"}},
        {"begun again behind its end", Plain, Part("one") + sEnd + Part("two") + sEnd, {"one", "two"}},
        {"blank behind the boundary", Plain, "--frame \t\r\n\r\none\r\n--frame-- \r\n", {"one"}},
        {"empty parts", Plain, Part("") + Counted("", 0) + Part("one") + sEnd, {"one"}},
        {"no head", Plain, "--frame\r\n\r\none\r\n" + sEnd, {"one"}},
        {"head only", Plain, "--frame\r\nA: b\r\n" + Part("one") + sEnd, {"one"}},
        {"boundary within a line",
         Plain,
         Part("x--frame\r\n--framed\r\n-frame-") + sEnd,
         {"x--frame\r\n--framed\r\n-frame-"}},
        {"line ends of its own", Plain, Part("one\r\n\r\n") + sEnd, {"one\r\n\r\n"}},
        {"counted line ends", Plain, Counted("one\r\n\r\n", 7) + Counted("-", 1) + sEnd, {"one\r\n\r\n", "-"}},
        {"boundary in a counted body",
         Plain,
         Counted("x\r\n--fram", 9) + Counted("two", 3) + sEnd,
         {"x\r\n--fram", "two"}},
        {"no line end behind",
         Plain,
         "--frame\r\nContent-Length: 3\r\n\r\none--frame\r\n\r\ntwo\r\n" + sEnd,
         {"one", "two"}},
        {"too long a length", Plain, Counted("one", 12) + Counted("two", 99) + sEnd, {"one", "two"}},
        {"too short a length", Plain, Counted("first", 2) + Counted("second", 2) + sEnd, {"fi", "second"}},
        {"overflowing length", Plain, Part("one", "Content-Length: 99999999999999999999\r\n") + sEnd, {"one"}},
        {"negative length", Plain, Part("one", "Content-Length: -1\r\n") + sEnd, {"one"}},
        {"huge length", Plain, Counted("one", 1u << 30) + sEnd, {"one"}},
        {"zeros", Plain, Part(std::string("\0\0\n\0", 4)) + sEnd, {std::string("\0\0\n\0", 4)}},
    };
    for (const Row& row : arRows)
        for (const std::size_t nStep : {std::size_t(1), std::size_t(2), std::size_t(7), row.sStream.size() + 1})
            EXPECT_EQ(Read(row.pType, row.sStream, nStep), row.arParts) << row.pWhat << ", " << nStep << " at a time";
}

TEST(Multipart, GivesACountedPartWithItsLastByte)
{
    CMultipartReader reader;
    reader.m_S_Begin(Plain);
    const std::string sStream = Counted("one", 3);
    reader.m_S_Feed(sStream.data(), sStream.size() - 3);
    EXPECT_EQ(Taken(reader), Parts()) << "a byte is missing";
    reader.m_S_Feed("e", 1);
    EXPECT_EQ(Taken(reader), Parts{"one"});
}

TEST(Multipart, DropsWhatIsTooLargeAndReadsOn)
{
    const std::string sLine(3u << 20, 'x'), sLines = sLine + "\r\n" + sLine;
    const std::string sHead = "A: " + std::string(CMultipartReader::MaxHead, 'x') + "\r\n";
    const std::string arLarge[] = {std::string("preamble ") + sLines + "\r\n",
                                   Part(sLines),
                                   Part(sLine + sLine),
                                   Counted(sLines, sLines.size()),
                                   Part("one", sHead),
                                   Part("one", sHead + sHead)};
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
    EXPECT_EQ(Read(Plain, Counted(sBody, sBody.size()) + Part(sBody) + "--frame--", 64).size(), 2U);
    EXPECT_LT(std::chrono::steady_clock::now() - nBegin, std::chrono::seconds(3));
}

} // namespace
