#include <QDirIterator>
#include <QRandomGenerator>
#include <algorithm>
#include <cstring>
#include <map>
#include <thread>

#include "core/backup/CBackupFile.h"
#include "core/backup/CBackupNames.h"
#include "core/backup/CRecordBackup.h"
#include "core/backup/CRecordPair.h"
#include "records/CRecordTrack.h"
#include "support/Files.h"
#include "support/HostFixture.h"
#include "support/ServerProcess.h"
#include "support/Table.h"

namespace {

constexpr std::uint64_t Ten = 600000;
constexpr std::uint64_t FileMs = 1795479600000; ///< 2026-11-24 00:20, of the last file that is whole
constexpr std::int64_t NowMs = FileMs + Ten + 9000;
constexpr auto Sound = "disk1_record/ACH0/20261124/sound-0020";

struct stDef_Cut
{};

class RecordBackup : public HostFixture
{
protected:
    using Files = std::map<QString, QByteArray>;

    void Start(bool bPC = false)
    {
        StartRecorder({.bPC = bPC, .bStreams = false, .fnNowMs = [this] { return vm_nNowMs.load(); }});
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(bPC ? 0 : 1, nullptr, &vm_env));
        CRecordBackup::s_F_o_Clock().fnWait = [](int) {};
    }
    void TearDown() override { CBackupFile::s_S_SetStepHook({}); }

    /// Backs the first channel's tracks up, of three seconds unless told otherwise.
    int Backup(const QString& sFolder, const char* pszTracks = "a", std::uint64_t nMs = 3000)
    {
        QByteArray sTracks = pszTracks, sChannels = "1";
        stDef_RecordBackupInfo stInfo;
        stInfo.sFolder = sFolder;
        stInfo.sName = "backup";
        stInfo.nStart = FileMs;
        stInfo.nEnd = FileMs + nMs;
        stInfo.pSearch = sTracks.data();
        stInfo.pChannels = sChannels.data();
        stInfo.sIP = "127.0.0.1";
        stInfo.sUID = User;
        stInfo.sPWD = Password;
        stInfo.nPort = vm_nvr.m_F_n_HttpPort();
        stInfo.psProgress = &vm_sProgress;
        stInfo.pbRun = &vm_bRun;
        return vm_pNvr->m_F_n_RecordBackup(stInfo);
    }
    static Files All(const QString& sFolder)
    {
        Files mapFiles;
        QDirIterator it(sFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString sPath = it.next();
            mapFiles[QDir(sFolder).relativeFilePath(sPath)] = ReadFile(sPath);
        }
        return mapFiles;
    }
    static QString Names(const Files& mapFiles)
    {
        QStringList arNames;
        for (const auto& [sName, sBytes] : mapFiles)
            arNames += sName + ':' + QString::number(sBytes.size());
        return arNames.join(' ');
    }
    std::ptrdiff_t Asked(const char* pszPart)
    {
        const auto arEntries = vm_nvr.m_F_o_Log().m_F_ar_Entries();
        return std::count_if(arEntries.begin(), arEntries.end(), [pszPart](const auto& st) {
            return st.sTarget.find(pszPart) != std::string::npos && st.nStatus == 200;
        });
    }
    /// Each record of the span names the image that the recorder has for it, and no other names any.
    void ExpectImages(const Files& mapFiles, const QString& sStem, emDef_RecordKind eKind, std::uint64_t nEnd)
    {
        const QByteArray sData = mapFiles.at(sStem + ".dat"), sImages = mapFiles.at(sStem + ".img");
        const CRecordTrack objTrack(0, eKind);
        int nImages = 0;
        for (qsizetype n = 16; n < sData.size(); n += 16) {
            nsRecord::st_DatRecord st;
            std::memcpy(&st, sData.constData() + n, sizeof st);
            ASSERT_EQ(st.m_F_b_NamesImage(), st.nStamp <= nEnd) << n;
            if (!st.m_F_b_NamesImage())
                continue;
            const auto nRecord = objTrack.m_F_n_FirstFrom(static_cast<std::int64_t>(st.nStamp));
            ASSERT_EQ(sImages.mid(st.nOffset, st.nLength).toStdString(), objTrack.m_F_s_Image(nRecord)) << n;
            ++nImages;
        }
        EXPECT_GT(nImages, 1);
    }

    std::atomic<std::int64_t> vm_nNowMs{NowMs};
    CNvrHolder vm_pNvr;
    QTemporaryDir vm_dir;
    QString vm_sProgress;
    bool vm_bRun = true;
};

TEST_F(RecordBackup, OfAnEmbeddedRecorderHasTheImagesOfTheSpanAndIsNotAskedForTwice)
{
    Start();
    ASSERT_EQ(Backup(vm_dir.path(), ""), 1);
    const Files mapFiles = All(vm_dir.filePath("backup"));
    EXPECT_EQ(mapFiles.size(), 1u + 4 * 3) << Names(mapFiles).toStdString();
    EXPECT_TRUE(mapFiles.at("backup.ini").startsWith("[TimeZone]\r\nInfo="));
    EXPECT_EQ(mapFiles.at("backup.ini").size(), 11 + 1 + 5 + 344 + 2);
    ExpectImages(mapFiles, Sound, emDef_RecordKind::Sound, FileMs + 3000);
    ExpectImages(mapFiles, "disk1_record/VCH0/20261124/main-0020", emDef_RecordKind::Main, FileMs + 3000);
    ExpectImages(mapFiles, "disk1_record/VCH0/20261124/second-0020", emDef_RecordKind::Second, FileMs + 3000);
    EXPECT_EQ(Names(All(vm_dir.path())).count("backup/"), qsizetype(mapFiles.size())) << "nothing is left beside it";

    const auto nImages = Asked("rpb/img"), nData = Asked("rpb/dat");
    ASSERT_EQ(Backup(vm_dir.path(), ""), 1);
    EXPECT_EQ(All(vm_dir.filePath("backup")), mapFiles);
    EXPECT_EQ(Asked("rpb/img"), nImages);
    for (const stDef_LogEntry& st : vm_nvr.m_F_o_Log().m_F_ar_Entries())
        EXPECT_FALSE(st.sTarget.starts_with("/rpb/img") && st.sTarget.find("VCH") != std::string::npos &&
                     st.sTarget.find(',') != std::string::npos)
            << "video images are asked for one by one: " << st.sTarget;
    EXPECT_EQ(Asked("rpb/dat"), nData + 4) << "only for what is recorded by now";

    ASSERT_EQ(Backup(vm_dir.path(), "a", 5000), 1);
    ExpectImages(All(vm_dir.filePath("backup")), Sound, emDef_RecordKind::Sound, FileMs + 5000);
    EXPECT_EQ(Asked("rpb/img"), nImages + 1);
}

TEST_F(RecordBackup, OfAPcRecorderIsACopyOfItsFiles)
{
    Start(true);
    ASSERT_EQ(Backup(vm_dir.path(), "a"), 1);
    const Files mapFiles = All(vm_dir.filePath("backup"));
    EXPECT_EQ(mapFiles.size(), 4u) << Names(mapFiles).toStdString();
    ExpectImages(mapFiles, "D_Reord/CH0/20261124/sound-0020", emDef_RecordKind::Sound, FileMs + Ten);
    vm_bRun = false;
    EXPECT_EQ(Backup(vm_dir.path(), "a"), 0);
    EXPECT_EQ(All(vm_dir.filePath("backup")), mapFiles) << "a stop takes nothing that stood there before";
}

/// However a run ends, at any change of the disk, the next one ends with the files of an undisturbed run.
TEST_F(RecordBackup, GoesOnFromEveryStepAtWhichItEnded)
{
    Start();
    ASSERT_EQ(Backup(vm_dir.filePath("whole")), 1);
    const Files mapWhole = All(vm_dir.filePath("whole"));
    for (const char* pszEnd : {"killed", "disk full", "stopped"}) {
        int nSteps = 0;
        for (int nEnd = 1; nSteps >= nEnd - 1; ++nEnd) {
            SCOPED_TRACE(std::string(pszEnd) + " at step " + std::to_string(nEnd));
            const QString sFolder = vm_dir.filePath(QString("%1 %2").arg(pszEnd).arg(nEnd));
            nSteps = 0;
            CBackupFile::s_S_SetStepHook([&] {
                if (++nSteps < nEnd)
                    return true;
                if (std::strcmp(pszEnd, "killed") == 0)
                    throw stDef_Cut();
                vm_bRun = std::strcmp(pszEnd, "stopped") != 0;
                return !vm_bRun;
            });
            try {
                Backup(sFolder);
            } catch (const stDef_Cut&) {
            }
            CBackupFile::s_S_SetStepHook({});
            vm_bRun = true;
            ASSERT_EQ(Backup(sFolder), 1);
            ASSERT_TRUE(All(sFolder) == mapWhole) << Names(All(sFolder)).toStdString();
            QDir(sFolder).removeRecursively();
        }
        EXPECT_GT(nSteps, 30);
    }
}

TEST_F(RecordBackup, GoesOnAfterAKill)
{
    Start();
    ASSERT_EQ(Backup(vm_dir.filePath("whole"), "am", 60000), 1);
    const Files mapWhole = All(vm_dir.filePath("whole"));
    const int nKills = qEnvironmentVariableIntValue("BACKUP_KILLS") ? qEnvironmentVariableIntValue("BACKUP_KILLS") : 30;
    int nWithin = 0;
    for (int n = 0; n < nKills; ++n) {
        const QString sFolder = vm_dir.filePath(QString("killed %1").arg(n));
        ServerProcess objRunner({sFolder.toStdString(), std::to_string(vm_nvr.m_F_n_HttpPort()), std::to_string(FileMs),
                                 std::to_string(FileMs + 60000), "am"});
        std::this_thread::sleep_for(std::chrono::milliseconds(QRandomGenerator::global()->bounded(250)));
        nWithin += objRunner.End(SIGKILL) < 0 && QDir(sFolder).exists();
        ASSERT_EQ(Backup(sFolder, "am", 60000), 1);
        ASSERT_TRUE(All(sFolder) == mapWhole) << Names(All(sFolder)).toStdString();
    }
    EXPECT_GT(nWithin, nKills / 10);
}

TEST_F(RecordBackup, MendsWhatItFinds)
{
    using Change = void (*)(QByteArray & sData, QByteArray & sImages);
    const std::pair<const char*, Change> arChanges[] = {
        {"data header", [](QByteArray& s, QByteArray&) { s[3] = 'x'; }},
        {"image header", [](QByteArray&, QByteArray& s) { s[3] = 'x'; }},
        {"no image file", [](QByteArray&, QByteArray& s) { s.clear(); }},
        {"no data file", [](QByteArray& s, QByteArray&) { s.clear(); }},
        {"cut data", [](QByteArray& s, QByteArray&) { s.chop(5); }},
        {"cut images", [](QByteArray&, QByteArray& s) { s.chop(100); }},
        {"cut to the header", [](QByteArray&, QByteArray& s) { s.resize(16); }},
        {"bytes behind", [](QByteArray&, QByteArray& s) { s.append("more"); }},
        {"record 0 lags", [](QByteArray& s, QByteArray&) { s.replace(24, 8, QByteArray(8, '\0')); }},
        {"no image named",
         [](QByteArray& s, QByteArray&) {
             for (qsizetype n = 24; n < s.size(); n += 16)
                 s.replace(n, 8, QByteArray(8, '\0'));
         }},
    };
    Start();
    ASSERT_EQ(Backup(vm_dir.path()), 1);
    const Files mapWhole = All(vm_dir.path());
    const QString sStem = vm_dir.filePath(QString("backup/") + Sound);
    for (const auto& [pszName, fnChange] : arChanges) {
        SCOPED_TRACE(pszName);
        QByteArray sData = ReadFile(sStem + ".dat"), sImages = ReadFile(sStem + ".img");
        fnChange(sData, sImages);
        WriteFile(sStem + ".dat", sData);
        WriteFile(sStem + ".img", sImages);
        ASSERT_TRUE(vm_nvr.m_F_o_RecordFaults().m_F_b_Parse("*=no-versions"));
        EXPECT_EQ(Backup(vm_dir.path()), 0);
        EXPECT_TRUE(ReadFile(sStem + ".dat") == sData && ReadFile(sStem + ".img") == sImages)
            << "who tells no version can't have it mended";
        vm_nvr.m_F_o_RecordFaults().m_S_Clear();
        ASSERT_EQ(Backup(vm_dir.path()), 1);
        ASSERT_TRUE(All(vm_dir.path()) == mapWhole) << Names(All(vm_dir.path())).toStdString();
    }
}

TEST_F(RecordBackup, FailsWithTheServiceAndGoesOnAfterwards)
{
    Start();
    ASSERT_EQ(Backup(vm_dir.filePath("whole")), 1);
    const Files mapWhole = All(vm_dir.filePath("whole"));
    for (const char* pszRequest : {"rpb/info", "rpb/file", "rpb/dat", "rpb/img"})
        for (const char* pszFault : {"status:500", "cut-body:10", "garbage", "long-length"}) {
            const std::string sFault = std::string(pszRequest) + '=' + pszFault;
            SCOPED_TRACE(sFault);
            const QString sFolder = vm_dir.filePath("failed");
            ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Parse(sFault));
            EXPECT_EQ(Backup(sFolder), 0);
            vm_nvr.m_F_o_Faults().m_S_Clear();
            ASSERT_EQ(Backup(sFolder), 1);
            ASSERT_TRUE(All(sFolder) == mapWhole) << Names(All(sFolder)).toStdString();
            QDir(sFolder).removeRecursively();
        }
}

/// A recorder that lies: the run ends as the table says, nothing is written outside, and the next honest run ends with
/// the files of an undisturbed one.
TEST_F(RecordBackup, OutlivesALyingRecorder)
{
    Start();
    ASSERT_EQ(Backup(vm_dir.filePath("whole")), 1);
    const Files mapWhole = All(vm_dir.filePath("whole"));
    for (const stDef_TableRow& row : ReadTable("backup_lies.txt", 3)) {
        SCOPED_TRACE(row.sWhere);
        QTemporaryDir dir;
        ASSERT_TRUE(vm_nvr.m_F_o_RecordFaults().m_F_b_Parse(row[0]));
        EXPECT_EQ(Backup(dir.filePath("in/it")), row.Number(1));
        Backup(vm_dir.filePath("whole"));
        vm_nvr.m_F_o_RecordFaults().m_S_Clear();
        const Files mapKept = All(vm_dir.filePath("whole"));
        for (const auto& [sName, sBytes] : mapWhole)
            EXPECT_TRUE(mapKept.contains(sName) && mapKept.at(sName) == sBytes) << "a lie cost " << sName.toStdString();
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("in"));
        EXPECT_EQ(QDir(dir.filePath("in")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("it"));
        ASSERT_EQ(Backup(dir.filePath("in/it")), 1);
        const Files mapAfter = All(dir.filePath("in/it"));
        for (const auto& [sName, sBytes] : mapWhole)
            EXPECT_TRUE(!row.Is(2) || (mapAfter.contains(sName) && mapAfter.at(sName) == sBytes))
                << sName.toStdString();
    }
}

TEST_F(RecordBackup, StopsAtOnceWhileARecorderIsSilent)
{
    Start();
    for (const char* pszRequest : {"logininfo", "rpb/info", "rpb/file", "rpb/dat", "rpb/img"}) {
        SCOPED_TRACE(pszRequest);
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Parse(std::string(pszRequest) + "=silence"));
        vm_nvr.m_F_o_Log().m_S_Clear();
        std::thread objHost([this, pszRequest] {
            EXPECT_TRUE(vm_nvr.m_F_o_Log().m_F_b_Wait(
                [pszRequest](const stDef_LogEntry& st) {
                    return st.sFault == "silence" && st.sTarget.find(pszRequest) != std::string::npos;
                },
                10000));
            nsRecordBackup::SetRun(&vm_bRun, false);
        });
        const auto nBegin = std::chrono::steady_clock::now();
        Backup(vm_dir.path());
        EXPECT_LT(std::chrono::steady_clock::now() - nBegin, std::chrono::seconds(3));
        objHost.join();
        vm_bRun = true;
        vm_nvr.m_F_o_Faults().m_S_Clear();
    }
    EXPECT_EQ(Backup(vm_dir.path()), 1);
}

TEST(BackupNames, StayBelowTheTarget)
{
    for (const stDef_TableRow& row : ReadTable("backup_names.txt", 4)) {
        const QStringList arMap = QString::fromStdString(row[2]).split(',');
        const CBackupNames objNames(&arMap);
        const QByteArray sRemote = QByteArray::fromStdString(row[1]);
        const auto sLocal = row[0] == "PC" ? objNames.m_F_s_PC(sRemote) : objNames.m_F_s_Embedded(sRemote);
        EXPECT_EQ(sLocal.value_or(QString()).toStdString(), row[3]) << row.sWhere;
    }
}

TEST(RecordPair, TakesAReplyOnlyIfItIsASumOfTheBlocksThatWereAskedFor)
{
    const auto Block = [](unsigned n, const QByteArray& sImage) {
        const unsigned arHead[] = {n, static_cast<unsigned>(sImage.size())};
        return QByteArray(reinterpret_cast<const char*>(arHead), sizeof arHead) + sImage + '\0';
    };
    std::vector<CRecordPair::st_Block> arBlocks;
    const auto Split = [&](const QByteArray& s) {
        return CRecordPair::s_F_b_Split(s.constData(), static_cast<std::int32_t>(s.size()), {3, 4}, arBlocks);
    };
    const QByteArray sTwo = Block(4, "four") + Block(3, ""); // its blocks point into it
    EXPECT_TRUE(Split(sTwo));
    EXPECT_TRUE(arBlocks.size() == 2 && arBlocks[0].sImage == "four" && arBlocks[1].sImage.isEmpty());
    EXPECT_TRUE(Split(""));
    EXPECT_FALSE(Split(Block(5, "five")));
    EXPECT_FALSE(Split(Block(3, "x") + Block(3, "x")));
    EXPECT_FALSE(Split(Block(3, "three").chopped(1)));
    EXPECT_FALSE(Split(Block(3, "three") + "x"));
    QByteArray sHuge = Block(3, "three");
    sHuge.replace(4, 4, "\xff\xff\xff\xff");
    EXPECT_FALSE(Split(sHuge));
}

TEST(RecordPair, StopsBefore4GiB)
{
    QTemporaryDir dir;
    const QString sData = dir.filePath("a.dat"), sImage = dir.filePath("a.img");
    const auto Bytes = [](const auto& st) { return QByteArray(reinterpret_cast<const char*>(&st), sizeof st); };
    const nsRecord::st_DatRecord stLast{1, 0xFFFFFF00, 0x80}, stNext{2, 0, 0};
    WriteFile(sData, Bytes(CRecFunc::s_F_o_MakeFileInfo(1, "RecordDat")) + Bytes(stLast) + Bytes(stNext));
    WriteFile(sImage, Bytes(CRecFunc::s_F_o_MakeFileInfo(0, "RecordImg")));
    ASSERT_TRUE(QFile::resize(sImage, 0xFFFFFF80)); // a hole takes no room
    CRecordPair objPair(sData, sImage, 1, 0);
    ASSERT_TRUE(objPair.m_F_b_Open() && objPair.m_F_b_Repair());
    EXPECT_EQ(objPair.m_F_ar_Missing(0, 2), std::vector<std::uint32_t>{1});
    EXPECT_FALSE(objPair.m_F_b_AppendImages({{1, QByteArray(0x80, 'x')}}));
    EXPECT_EQ(QFileInfo(sImage).size(), 0xFFFFFF80);
    EXPECT_TRUE(objPair.m_F_b_AppendImages({{1, QByteArray(0x7F, 'x')}}));
}

TEST(RecordProfile, TakesNoIndexWithAByteThatIsWrong)
{
    CVirtualNvr objRecorder;
    std::string sError;
    ASSERT_TRUE(objRecorder.m_F_b_Start({.bStreams = false, .fnNowMs = [] { return NowMs; }}, sError)) << sError;
    QTemporaryDir dir;
    const QString sFile = dir.filePath("sound.idx");
    CRPBProc objProc;
    objProc.m_S_SetAccount("admin", "Fl33t!ink");
    objProc.m_F_n_ConnectTo(0, -1, "127.0.0.1", objRecorder.m_F_n_HttpPort(), 5000, 6);
    objProc.m_S_RequestFile("/mnt/storage/disk1/ACH0/20261124/sound.idx", sFile);
    ASSERT_TRUE(objProc.m_F_b_GetDirectData(nullptr, nullptr, nullptr));
    const QByteArray sWhole = ReadFile(sFile);
    ASSERT_EQ(CRecordProfile_A::s_F_n_IsFileIndex(sFile), 1);
    EXPECT_EQ(CRecordProfile_T::s_F_n_IsFileIndex(sFile) + CRecordProfile_V::s_F_n_IsFileIndex(sFile, false), 0);
    QStringList arNames;
    CRecordProfile::m_S_GetFileNemeFormIndex(sFile, FileMs, FileMs, "ta", arNames);
    EXPECT_EQ(arNames, QStringList("sound-0020.img"));
    CRecordProfile::m_S_GetFileNemeFormIndex(sFile, FileMs, FileMs, "ms", arNames);
    EXPECT_EQ(arNames, QStringList());
    for (qsizetype n = 0; n < sWhole.size(); ++n) {
        const bool bFree = n >= 18 && n < 20; // the channel's number may be any
        QByteArray sWrong = sWhole;
        sWrong[n] = static_cast<char>(sWrong[n] ^ 0x40);
        WriteFile(sFile, sWrong);
        EXPECT_EQ(CRecordProfile_A::s_F_n_IsFileIndex(sFile), bFree || (n >= 26 && n < 32)) << n;
        WriteFile(sFile, sWhole.left(n));
        EXPECT_EQ(CRecordProfile_A::s_F_n_IsFileIndex(sFile), 0) << n;
    }
}

} // namespace
