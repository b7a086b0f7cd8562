#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "live/CLayoutStore.h"
#include "live/CReconnectPause.h"
#include "live/CSnapshot.h"
#include "support/Files.h"

namespace {

TEST(ReconnectPause, GrowsToItsBoundAndIsJittered)
{
    const struct
    {
        double dRandom;
        std::vector<int> arPauses;
        int nLong;
    } arRows[] = {
        {0.0, {2000, 4000, 8000, 16000, 25000, 25000}, 25000},
        {0.5, {2200, 4400, 8800, 17600, 27500, 27500}, 27500},
        {0.999999, {2399, 4799, 9599, 19199, 29999, 29999}, 29999},
    };
    for (const auto& row : arRows) {
        CReconnectPause pause([&row] { return row.dRandom; });
        for (int nRound = 0; nRound < 2; ++nRound) {
            for (const int nPause : row.arPauses)
                EXPECT_EQ(pause.m_F_n_NextMs(), nPause) << row.dRandom;
            EXPECT_EQ(pause.m_F_n_LongMs(), row.nLong);
            pause.m_S_Reset();
        }
    }
}

TEST(LayoutStore, BringsBackWhatIsSoundAndDefaultsForTheRest)
{
    QTemporaryDir dir;
    const CLayoutStore store(dir.path());
    stDef_Layout stLayout;
    EXPECT_FALSE(store.m_F_b_Load(stLayout));
    stLayout = {16, 2, {{3, 0}, {}, {1000, 63}}, QByteArray("\0geometry", 9), true, 0};
    ASSERT_TRUE(store.m_F_b_Save(stLayout));
    stDef_Layout stBack;
    ASSERT_TRUE(store.m_F_b_Load(stBack));
    EXPECT_EQ(stBack.nShape, 16);
    EXPECT_EQ(stBack.nPage, 2);
    EXPECT_EQ(stBack.arSlots, stLayout.arSlots);
    EXPECT_EQ(stBack.sGeometry, stLayout.sGeometry);
    EXPECT_TRUE(stBack.bFullScreen);
    EXPECT_EQ(stBack.nLanguage, 0);

    const QString sFile = dir.filePath("Host.xml");
    WriteFile(
        sFile,
        "<root><Window Language='7' Geometry='%%%'/><Layout Shape='5' Page='-3' count='99999999'>"
        "<S000 NvrID='-5' Channel='1'/><S001 NvrID='5' Channel='64'/><S002 NvrID='2' Channel='1'/></Layout></root>");
    ASSERT_TRUE(store.m_F_b_Load(stBack));
    EXPECT_EQ(stBack.nShape, 4);
    EXPECT_EQ(stBack.nPage, 0);
    EXPECT_EQ(stBack.nLanguage, 1);
    ASSERT_EQ(stBack.arSlots.size(), std::size_t{CLayoutStore::MaxSlots});
    for (std::size_t i = 0; i < stBack.arSlots.size(); ++i)
        EXPECT_EQ(stBack.arSlots[i], i == 2 ? (stDef_ChannelKey{2, 1}) : stDef_ChannelKey()) << i;

    for (const char* pDamaged : {"<root><Layout count='4'", "", "<root/>", "<root><Layout count='-1'/></root>"}) {
        WriteFile(sFile, pDamaged);
        EXPECT_FALSE(store.m_F_b_Load(stBack)) << pDamaged;
        EXPECT_FALSE(QFile::exists(sFile)) << pDamaged;
        EXPECT_TRUE(QFile::exists(dir.filePath("Host.damaged.xml"))) << pDamaged;
    }
    EXPECT_FALSE(CLayoutStore(dir.filePath("no/such/folder")).m_F_b_Save(stLayout));
}

TEST(Snapshot, NeverLeavesItsFolderNorWritesOverAFile)
{
    QTemporaryDir dir;
    QImage image(8, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QDateTime tmTaken(QDate(2027, 3, 14), QTime(1, 2, 3));
    const QString sFirst = CSnapshot::s_F_s_Save(image, dir.path(), "../../etc/x:y\n*?", tmTaken);
    EXPECT_EQ(sFirst, dir.filePath("______etc_x_y 2027-03-14 01-02-03.png"));
    const QString sSecond = CSnapshot::s_F_s_Save(image, dir.path(), "../../etc/x:y\n*?", tmTaken);
    EXPECT_EQ(sSecond, dir.filePath("______etc_x_y 2027-03-14 01-02-03 (2).png"));
    EXPECT_EQ(QImage(sSecond).pixelColor(3, 3), QColor(Qt::red));
    EXPECT_NE(CSnapshot::s_F_s_Save(image, dir.path(), QString(80, QChar(0x9304)), tmTaken), "") << "240 bytes";
    EXPECT_EQ(CSnapshot::s_F_s_Save({}, dir.path(), "x", tmTaken), "");
    EXPECT_EQ(CSnapshot::s_F_s_Save(image, sFirst + "/below", "x", tmTaken), "");
}

} // namespace
