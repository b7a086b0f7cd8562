#include "core/backup/CRecordBackupEmbedded.h"

#include <algorithm>
#include <cstdlib>

#include "core/CReplyEnvelope.h"
#include "core/backup/CBackupFile.h"
#include "core/backup/CRecordPair.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int FlagOfTracks = 13; ///< place of the flag "may record the second stream alone" in DeviceFunc
constexpr int RecordsAtOnce = 400;
constexpr std::size_t ImagesAtOnce = 100;
constexpr std::size_t VideoImagesAtOnce = 1; ///< they are big

std::int16_t Number(const QByteArray& sText)
{
    return static_cast<std::int16_t>(std::clamp(std::atoi(sText.constData()), -1, 32767));
}

} // namespace

/// A recorder that may record its second streams alone says so in its System document.
void CRecordBackupEmbedded::m_S_BeforeConnect()
{
    CXmlObj xml;
    QString sFlags;
    xml.m_F_b_LoadXML(CSFunc::s_F_s_Utf8ToUnicode(m_F_s_GetDocument("cgi-bin/logininfo.cgi")));
    xml.m_F_n_GetText(u"/XML/root/DeviceFunc"_s, sFlags, QString());
    if (sFlags.split(u',').value(FlagOfTracks).trimmed() != u"1")
        return;
    const QByteArray sSystem = m_F_s_GetDocument("cgi-bin/SyncSetting.cgi?action=SystemXML");
    xml.m_F_b_LoadXML(CReplyEnvelope::s_F_s_CutRoot(CSFunc::s_F_s_Utf8ToUnicode(sSystem)));
    vm_bOnlyRecSecondStream = xml.m_F_n_GetValueInt(u"system"_s, u"OnlyRecSecondStream"_s, 0) == 1;
}

bool CRecordBackupEmbedded::m_F_b_TakeList(const QByteArray& sList)
{
    for (QByteArray sLine : sList.split('\n')) {
        if (sLine.endsWith('\r'))
            sLine.chop(1);
        if (const qsizetype nImg = sLine.indexOf("ImgVer="); nImg >= 0)
            vm_nFileVerImg = Number(sLine.mid(nImg + 7));
        else if (const qsizetype nDat = sLine.indexOf("DatVer="); nDat >= 0)
            vm_nFileVerDat = Number(sLine.mid(nDat + 7));
        else if (!sLine.isEmpty())
            vm_arRemote.append(sLine);
    }
    return m_F_b_VersionsKnown();
}

bool CRecordBackupEmbedded::m_F_b_VersionsKnown() const
{
    if (vm_nFileVerDat > g_nFileVerRecDat)
        CSFunc::s_S_Debug("vm_nFileVerDat(%d) > g_nFileVerRecDat(%d)", vm_nFileVerDat, g_nFileVerRecDat);
    else if (vm_nFileVerImg > g_nFileVerRecImg)
        CSFunc::s_S_Debug("vm_nFileVerImg(%d) > g_nFileVerRecImg(%d)", vm_nFileVerImg, g_nFileVerRecImg);
    else
        return true;
    return false;
}

/// Only a sound index takes its final name; what stood there before stays otherwise.
CRecordBackup::emDef_Step CRecordBackupEmbedded::m_F_n_FetchIndex(const QByteArray& sRemote, const QString& sIndex)
{
    const QString sTemporary = sIndex + m_F_s_TemporaryEnding();
    vm_arOpenWork = {sTemporary};
    m_S_Progress(s_F_s_FileName(sTemporary));
    if (m_F_n_Fetch(sRemote, sTemporary) != emDef_Step::Done)
        return emDef_Step::Failed;
    const bool bSound = CRecordProfile_V::s_F_n_IsFileIndex(sTemporary, vm_bOnlyRecSecondStream) ||
                        CRecordProfile_A::s_F_n_IsFileIndex(sTemporary) ||
                        CRecordProfile_T::s_F_n_IsFileIndex(sTemporary);
    if (!bSound)
        CBackupFile::s_S_Remove(sTemporary);
    else if (!CBackupFile::s_F_b_Place(sTemporary, sIndex))
        return emDef_Step::Failed;
    vm_arOpenWork.clear();
    return bSound ? emDef_Step::Done : emDef_Step::Skipped;
}

CRecordBackup::emDef_Step CRecordBackupEmbedded::m_F_n_TransferFiles(const stDef_Files& stFiles)
{
    CRecordPair objPair(stFiles.sData, stFiles.sImage, vm_nFileVerDat, vm_nFileVerImg);
    // A recorder that tells no version we know must not cost what stands here already.
    if (vm_nFileVerDat != g_nFileVerRecDat && objPair.m_F_b_Exists())
        return emDef_Step::Failed;
    if (!objPair.m_F_b_Open()) {
        CSFunc::s_S_Debug("%s open error", qUtf8Printable(stFiles.sImage));
        objPair.m_S_Remove();
        return emDef_Step::Skipped;
    }
    if (!objPair.m_F_b_Repair()) // a full disk, say: what stands there stays
        return emDef_Step::Failed;
    const emDef_Step nStep = m_F_n_FetchRecords(objPair, stFiles.sRemoteData);
    return nStep == emDef_Step::Done ? m_F_n_FetchImages(objPair, stFiles.sRemoteImage) : nStep;
}

CRecordBackup::emDef_Step CRecordBackupEmbedded::m_F_n_FetchRecords(CRecordPair& objPair, const QByteArray& sRemote)
{
    if (!objPair.m_F_b_BeginData() || vm_nFileVerDat != g_nFileVerRecDat)
        return emDef_Step::Failed;
    constexpr std::int32_t RecordBytes = sizeof(nsRecord::st_DatRecord);
    std::int32_t nCame = 0;
    do {
        if (!m_F_b_Runs())
            return emDef_Step::Stopped;
        m_S_Progress(s_F_s_FileName(CBackupNames::s_F_s_Text(sRemote)));
        char* pData = nullptr;
        std::int32_t nSize = 0;
        vm_pProc->m_S_RequestBackupDat(sRemote, static_cast<int>(objPair.m_F_n_Records()), RecordsAtOnce);
        if (const emDef_Step nStep = m_F_n_Collect(&pData, &nSize); nStep != emDef_Step::Done)
            return nStep;
        nCame = nSize / RecordBytes;
        // More than were asked for are not those that were asked for.
        if (nSize % RecordBytes != 0 || nCame > RecordsAtOnce ||
            (nCame > 0 && !objPair.m_F_b_AppendRecords(QByteArray(pData, nSize))))
            return emDef_Step::Failed;
    } while (nCame == RecordsAtOnce);
    return emDef_Step::Done;
}

CRecordBackup::emDef_Step CRecordBackupEmbedded::m_F_n_FetchHead(CRecordPair& objPair, const QByteArray& sRemote)
{
    char* pData = nullptr;
    std::int32_t nSize = 0;
    std::vector<CRecordPair::st_Block> arBlocks;
    const std::uint32_t nHead = CRPBProc::s_nHeadRecord;
    vm_pProc->m_S_RequestBackupImg(sRemote, &nHead, 1);
    if (const emDef_Step nStep = m_F_n_Collect(&pData, &nSize); nStep != emDef_Step::Done)
        return nStep;
    const bool bTaken = CRecordPair::s_F_b_Split(pData, nSize, {nHead}, arBlocks) && arBlocks.size() == 1 &&
                        objPair.m_F_b_BeginImages(arBlocks[0].sImage);
    return bTaken ? emDef_Step::Done : emDef_Step::Failed;
}

/// Requests run ahead, so that the way to the recorder and back costs little; replies are written in their order.
CRecordBackup::emDef_Step CRecordBackupEmbedded::m_F_n_FetchImages(CRecordPair& objPair, const QByteArray& sRemote)
{
    const QString sName = s_F_s_FileName(CBackupNames::s_F_s_Text(sRemote));
    m_S_Progress(sName);
    if (objPair.m_F_b_NeedsHead())
        if (const emDef_Step nStep = m_F_n_FetchHead(objPair, sRemote); nStep != emDef_Step::Done)
            return nStep;
    const std::size_t nBatch = sRemote.contains("VCH") ? VideoImagesAtOnce : ImagesAtOnce;
    const std::vector<std::uint32_t> arMissing = objPair.m_F_ar_Missing(vm_stInfo.nStart, vm_stInfo.nEnd);
    const auto nBatchFrom = [&](std::size_t nFrom) { return std::min(nBatch, arMissing.size() - nFrom); };
    std::size_t nAsked = 0;
    for (std::size_t nDone = 0; nDone < arMissing.size();) {
        if (!m_F_b_Runs())
            return emDef_Step::Stopped;
        m_S_Progress(QString::asprintf("-%02d%%", static_cast<int>(nDone * 100 / arMissing.size())).prepend(sName));
        for (; nAsked < arMissing.size() && nAsked < nDone + nBatch * CRPBProc::s_nMaxAhead;
             nAsked += nBatchFrom(nAsked))
            vm_pProc->m_S_RequestBackupImg(sRemote, arMissing.data() + nAsked, static_cast<int>(nBatchFrom(nAsked)));
        char* pData = nullptr;
        std::int32_t nSize = 0;
        if (const emDef_Step nStep = m_F_n_Collect(&pData, &nSize); nStep != emDef_Step::Done)
            return nStep;
        const auto itFirst = arMissing.begin() + static_cast<std::ptrdiff_t>(nDone);
        nDone += nBatchFrom(nDone);
        std::vector<CRecordPair::st_Block> arBlocks;
        if (!CRecordPair::s_F_b_Split(pData, nSize, {itFirst, arMissing.begin() + static_cast<std::ptrdiff_t>(nDone)},
                                      arBlocks) ||
            !objPair.m_F_b_AppendImages(arBlocks))
            return emDef_Step::Failed;
    }
    return arMissing.empty() || objPair.m_F_b_Sync() ? emDef_Step::Done : emDef_Step::Failed;
}
