#include "core/backup/CRecordBackup.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>
#include <chrono>
#include <future>
#include <thread>
#include <utility>

#include "core/backup/CBackupFile.h"
#include "host/Lib_Bedrock.h"
#include "host/Lib_Hostenv.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int TimeoutMs = 30000;
constexpr int ConnectionKind = 6;
constexpr int ConnectWaitMs = 500;
constexpr int SliceMs = 50; ///< how often a wait looks at the run flag
constexpr qint64 MaxListBytes = 16 << 20;
constexpr auto SameName = Qt::CaseInsensitive; ///< as on file systems that take capitals for small letters

QByteArray Narrow(const QString& sText)
{
    return CSFunc::s_F_s_UnicodeToAnsi(sText);
}

/// A probe's name is the tick count, and it is empty: other files are somebody's.
bool IsProbe(const QFileInfo& objInfo)
{
    const QString sName = objInfo.completeBaseName();
    return objInfo.size() == 0 && !sName.isEmpty() &&
           std::all_of(sName.begin(), sName.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

CRecordBackup::stDef_Clock& CRecordBackup::s_F_o_Clock()
{
    static stDef_Clock s_stClock{[] {
                                     const auto nNow = std::chrono::steady_clock::now().time_since_epoch();
                                     return static_cast<std::uint64_t>(
                                         std::chrono::duration_cast<std::chrono::milliseconds>(nNow).count());
                                 },
                                 [](int nMs) { std::this_thread::sleep_for(std::chrono::milliseconds(nMs)); }};
    return s_stClock;
}

CRecordBackup::CRecordBackup(stDef_RecordBackupInfo stInfo)
    : vm_stInfo(std::move(stInfo)),
      vm_objNames(vm_stInfo.pFolderMap),
      vm_sTarget(vm_stInfo.sFolder + u'/' + vm_stInfo.sName)
{}

CRecordBackup::~CRecordBackup() = default;

QString CRecordBackup::s_F_s_FileName(const QString& sPath)
{
    return sPath.section(u'/', -1);
}

int CRecordBackup::m_F_n_Run()
{
    if (!m_F_b_Prepare())
        return 0;
    const QString sProbe = u"%1/%2.tmp"_s.arg(vm_stInfo.sFolder).arg(s_F_o_Clock().fnTickMs());
    CBackupFile objProbe;
    objProbe.m_F_b_Open(sProbe);
    objProbe.m_S_Close();
    const bool bDone = m_F_b_WriteZone() && m_F_b_TransferAll();
    vm_pProc.reset(); // nothing writes any more
    if (!bDone)
        m_S_RemoveOpenWork();
    CBackupFile::s_S_Remove(sProbe);
    return bDone ? 1 : 0;
}

bool CRecordBackup::m_F_b_Prepare()
{
    m_S_BeforeConnect();
    if (!CSFunc::s_F_n_CreateDirectorys(vm_sTarget))
        CSFunc::s_S_Debug("%s can't be made", qUtf8Printable(vm_sTarget));
    m_S_RemoveLeftovers();
    vm_pProc = std::make_unique<CRPBProc>();
    vm_pProc->m_S_SetAccount(Narrow(vm_stInfo.sUID), Narrow(vm_stInfo.sPWD));
    vm_pProc->m_F_n_ConnectTo(CAppEnv::s_objEnv.m_F_p_GetShmSystem(false)->hMainWnd, -1, Narrow(vm_stInfo.sIP),
                              vm_stInfo.nPort, TimeoutMs, ConnectionKind);
    for (int nMs = 0; nMs < ConnectWaitMs && m_F_b_Runs(); nMs += SliceMs)
        s_F_o_Clock().fnWait(SliceMs);
    return m_F_b_FetchList();
}

bool CRecordBackup::m_F_b_FetchList()
{
    const QString sFile = vm_sTarget + "/BackupInfo.txt"_L1;
    const CLoadDataByFile::st_PB_SearchInfo stSearch{vm_stInfo.nStart, vm_stInfo.nEnd, vm_stInfo.pSearch, -1};
    vm_pProc->m_S_RequestBackupInfo(sFile, &stSearch, vm_stInfo.pChannels);
    const bool bCame = m_F_n_Collect() == emDef_Step::Done;
    QFile objFile(sFile);
    QByteArray sList;
    const bool bRead = bCame && objFile.size() <= MaxListBytes && objFile.open(QIODevice::ReadOnly);
    if (bRead)
        sList = objFile.readAll();
    objFile.close();
    CBackupFile::s_S_Remove(sFile);
    return bRead && m_F_b_TakeList(sList);
}

bool CRecordBackup::m_F_b_TransferAll()
{
    for (const QByteArray& sRemote : std::as_const(vm_arRemote))
        if (!m_F_b_Runs() || m_F_n_Transfer(sRemote) == emDef_Step::Failed)
            return false;
    return true;
}

CRecordBackup::emDef_Step CRecordBackup::m_F_n_Transfer(const QByteArray& sRemote)
{
    const auto sName = m_F_s_LocalName(sRemote);
    if (!sName || sName->endsWith(m_F_s_TemporaryEnding(), SameName)) {
        CSFunc::s_S_Debug("%s is no name for a local file", sRemote.constData());
        return emDef_Step::Skipped;
    }
    const QString sIndex = m_F_s_Local(*sName);
    if (const emDef_Step nStep = m_F_n_FetchIndex(sRemote, sIndex); nStep != emDef_Step::Done)
        return nStep;
    QStringList arFiles;
    CRecordProfile::m_S_GetFileNemeFormIndex(sIndex, vm_stInfo.nStart, vm_stInfo.nEnd, vm_stInfo.pSearch, arFiles);
    const QString sFolder = sName->left(sName->lastIndexOf(u'/') + 1);
    for (const QString& sFile : std::as_const(arFiles)) {
        if (!m_F_b_Runs())
            return emDef_Step::Stopped;
        if (!m_F_b_Takes(*sName, sFolder, sFile))
            continue;
        const QString sData = CBackupNames::s_F_s_DataName(sFile);
        const emDef_Step nStep =
            m_F_n_TransferFiles({CBackupNames::s_F_s_Beside(sRemote, sFile), CBackupNames::s_F_s_Beside(sRemote, sData),
                                 m_F_s_Local(sFolder + sFile), m_F_s_Local(sFolder + sData)});
        if (nStep == emDef_Step::Failed || nStep == emDef_Step::Stopped)
            return nStep;
    }
    return emDef_Step::Done;
}

/// False for an image file whose name, or that of its data file, is another's, and for one that was taken before.
bool CRecordBackup::m_F_b_Takes(const QString& sIndexName, const QString& sFolder, const QString& sFile)
{
    const QString sData = CBackupNames::s_F_s_DataName(sFile);
    if (!CBackupNames::s_F_s_Safe(sFolder + sFile) || sData.compare(sFile, SameName) == 0 ||
        sIndexName.compare(sFolder + sFile, SameName) == 0 || sIndexName.compare(sFolder + sData, SameName) == 0 ||
        sFile.endsWith(m_F_s_TemporaryEnding(), SameName)) {
        CSFunc::s_S_Debug("%s is no name for a local file", qUtf8Printable(sFile));
        return false;
    }
    const qsizetype nBefore = vm_arSeen.size();
    vm_arSeen.insert((sFolder + sData).toLower());
    return vm_arSeen.size() > nBefore;
}

/// The time zone of the host, for whoever shows the records.
bool CRecordBackup::m_F_b_WriteZone()
{
    const nsCMS::stDef_SYS_INFO& stInfo = *CAppEnv::s_objEnv.m_F_p_GetShmSystem(false);
    const QString sZone = CSFunc::s_F_s_ByteToHexStr(stInfo.arTimeZone, sizeof stInfo.arTimeZone);
    return CBackupFile::s_F_b_WriteWhole(vm_sTarget + "/backup.ini"_L1,
                                         "[TimeZone]\r\nInfo=" + sZone.toLatin1() + "\r\n");
}

/// What a killed run left: its probe, and files under temporary names.
void CRecordBackup::m_S_RemoveLeftovers()
{
    for (const QFileInfo& objInfo : QDir(vm_stInfo.sFolder).entryInfoList({u"*.tmp"_s}, QDir::Files))
        if (IsProbe(objInfo))
            CBackupFile::s_S_Remove(objInfo.filePath());
    QDirIterator objFound(vm_sTarget, {u'*' + m_F_s_TemporaryEnding(), u"backup.ini.part"_s}, QDir::Files,
                          QDirIterator::Subdirectories);
    while (objFound.hasNext())
        CBackupFile::s_S_Remove(objFound.next());
}

void CRecordBackup::m_S_RemoveOpenWork()
{
    for (const QString& sPath : std::as_const(vm_arOpenWork)) {
        CBackupFile::s_S_Remove(sPath);
        CSFunc::s_F_n_RemoveDirectorys(sPath);
    }
}

CRecordBackup::emDef_Step CRecordBackup::m_F_n_Collect(char** ppData, std::int32_t* pnSize)
{
    if (vm_pProc->m_F_b_GetDirectData(ppData, pnSize, vm_stInfo.pbRun))
        return emDef_Step::Done;
    return m_F_b_Runs() ? emDef_Step::Failed : emDef_Step::Stopped;
}

CRecordBackup::emDef_Step CRecordBackup::m_F_n_Fetch(const QByteArray& sRemote, const QString& sTemporary)
{
    CSFunc::s_F_n_CreateDirectorys(QFileInfo(sTemporary).path());
    vm_pProc->m_S_RequestFile(sRemote, sTemporary);
    const emDef_Step nStep = m_F_n_Collect();
    if (nStep != emDef_Step::Done)
        CBackupFile::s_S_Remove(sTemporary);
    return nStep;
}

QByteArray CRecordBackup::m_F_s_GetDocument(const QByteArray& sUrl)
{
    CHTTP objHttp;
    CMemManage objReply;
    auto objResult = std::async(std::launch::async, [&] {
        return objHttp.m_F_n_HTTPGetDataDirect(Narrow(vm_stInfo.sIP), Narrow(vm_stInfo.sUID), Narrow(vm_stInfo.sPWD),
                                               vm_stInfo.nPort, sUrl, &objReply, TimeoutMs);
    });
    while (objResult.wait_for(std::chrono::milliseconds(SliceMs)) != std::future_status::ready)
        if (!m_F_b_Runs())
            objHttp.m_S_AbandonDirect();
    const int nResult = objResult.get();
    return nResult > 0 ? QByteArray(objReply.m_F_p_GetStrCHAR(), static_cast<qsizetype>(objReply.m_F_n_GetMemSize()))
                       : QByteArray();
}
