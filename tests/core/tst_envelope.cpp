#include <gtest/gtest.h>

#include "core/CReplyEnvelope.h"

namespace
{

struct Row
{
    const char* pReply;
    const char* pCut;
};

// A lone "</root>" in front of the document must not end it, and a missing end leaves at most five characters.
const Row g_arRows[] = {
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
    for (const Row& row : g_arRows)
        EXPECT_EQ(CReplyEnvelope::s_F_s_CutRoot(QString::fromLatin1(row.pReply)), QString::fromLatin1(row.pCut)) << row.pReply;
}

} // namespace
