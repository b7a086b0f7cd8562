#include <gtest/gtest.h>

#include "core/CDipsReply.h"
#include "core/CReplyEnvelope.h"
#include "support/Table.h"

namespace {

TEST(Envelope, KeepsFirstRootOnly)
{
    for (const stDef_TableRow& row : ReadTable("envelopes.txt", 2))
        EXPECT_EQ(CReplyEnvelope::s_F_s_CutRoot(QString::fromStdString(row[0])).toStdString(), row[1]) << row[0];
}

TEST(DipsReply, FindsAddressAndPort)
{
    for (const stDef_TableRow& row : ReadTable("dips_replies.txt", 3)) {
        const bool bFound = !row[2].empty();
        QByteArray sAddress = "before";
        int nPort = 1;
        EXPECT_EQ(CDipsReply::s_F_b_Parse(QByteArray::fromStdString(row[0]), sAddress, nPort), bFound) << row[0];
        EXPECT_EQ(sAddress.toStdString(), bFound ? row[1] : "before") << row[0];
        EXPECT_EQ(nPort, bFound ? row.Number(2) : 1) << row[0];
    }
}

} // namespace
