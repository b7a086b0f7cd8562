#include <gtest/gtest.h>

#include <climits>

#include "core/CDipsReply.h"
#include "core/CReplyEnvelope.h"

namespace {

struct EnvelopeRow
{
    const char* pReply;
    const char* pCut;
};

// A lone "</root>" in front of the document must not end it, and a missing end leaves at most five characters.
const EnvelopeRow g_arEnvelopes[] = {
    {"", ""},
    {"plain text", "plain text"},
    {"<root></root>", "<root></root>"},
    {"<XML>\n<root><a/></root>\n</XML>", "<root><a/></root>"},
    {"</root><root>1</root>2</root>", "<root>1</root>"},
    {"<root><root>1</root>2</root>", "<root><root>1</root>"},
    {"<Root></Root>", "<Root></Root>"},
    {"<root a='1'></root>", "<root a='1'></root>"},
    {"<root>no end", "<root>"},
    {"ab<root>no end", "<roo"},
    {"<XML>\n<root>no end", ""},
    {"<root></roo", "<root>"},
};

TEST(Envelope, KeepsFirstRootOnly)
{
    for (const EnvelopeRow& row : g_arEnvelopes)
        EXPECT_EQ(CReplyEnvelope::s_F_s_CutRoot(QString::fromLatin1(row.pReply)), QString::fromLatin1(row.pCut))
            << row.pReply;
}

struct DipsRow
{
    const char* pReply;
    bool bFound;
    const char* pAddress;
    int nPort;
};

const DipsRow g_arDips[] = {
    {"http://192.0.2.7:8080", true, "192.0.2.7", 8080},
    {"id ok http://nvr.example.com:81/path\n", true, "nvr.example.com", 81},
    {"http://a:1 http://b:2", true, "a:1 http://b", 2}, // the last colon counts, wherever it stands
    {"http://192.0.2.7:port", true, "192.0.2.7", 0},
    {"http://192.0.2.7:", true, "192.0.2.7", 0},
    {"http://192.0.2.7: 90", true, "192.0.2.7", 90},
    {"http://192.0.2.7:99999999999999999999", true, "192.0.2.7", INT_MAX},
    {"http://:80", true, "", 80},
    {"http://192.0.2.7", false, "before", 1},
    {"https://192.0.2.7:80", false, "before", 1},
    {"192.0.2.7:80", false, "before", 1},
    {"", false, "before", 1},
};

TEST(DipsReply, FindsAddressAndPort)
{
    for (const DipsRow& row : g_arDips) {
        QByteArray sAddress = "before";
        int nPort = 1;
        EXPECT_EQ(CDipsReply::s_F_b_Parse(row.pReply, sAddress, nPort), row.bFound) << row.pReply;
        EXPECT_EQ(sAddress, row.pAddress) << row.pReply;
        EXPECT_EQ(nPort, row.nPort) << row.pReply;
    }
}

} // namespace
