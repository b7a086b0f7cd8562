#pragma once

#include "At.h"
#include "CycleFixture.h"
#include "support/Table.h"
#include "toolkit/sheet/CPropertyPage.h"

/// A page that writes when the sheet is left by OK.
class DeferredPage : public CycleFixture
{
protected:
    /// Works at a page, ends with OK, and compares what the recorder then has with what it had, but for the values of
    /// page_changes.txt.
    void Check(int nTab, const std::string& sPage, const std::function<void(At)>& work)
    {
        CXmlObj xmlExpected = Stored(emDef_Document::System);
        for (const stDef_TableRow& row : ReadTable("page_changes.txt", 4))
            if (row[0] == sPage)
                xmlExpected.m_F_b_SetValue(QString(row[1].c_str()), row[2].c_str(), row[3].c_str());
        ASSERT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            work(At(OpenTab(sheet, nTab)));
            ExpectWaiting();
            Press(sheet, "OK");
        }));
        EXPECT_EQ(Stored(emDef_Document::System).m_F_s_GetUtf8().toStdString(),
                  xmlExpected.m_F_s_GetUtf8().toStdString());
    }
};
