#include "records/CRecordTrack.h"

#include "records/RecordClock.h"
#include "scene/CClipLibrary.h"
#include "scene/CFrameEncoder.h"
#include "scene/CSoundMaker.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

// Pictures are recorded by the key frame: with each the pictures up to the next one.
const stDef_RecordKindRow g_arRecordKinds[4] = {
    {emDef_RecordKind::Main, 'm', "VCH", "main", 'V', 0, 1000L * stDef_EncodedClip::s_nGop, stDef_EncodedClip::s_nFps},
    {emDef_RecordKind::Second, 's', "VCH", "second", 'V', 1, 1000L * stDef_EncodedClip::s_nGop,
     stDef_EncodedClip::s_nFps},
    {emDef_RecordKind::Sound, 'a', "ACH", "sound", 'A', 0, 1000, 1},
    {emDef_RecordKind::Events, 't', "TCH", "events", 'T', 0, 60000, 1},
};

namespace {

using Units = std::span<const stDef_EncodedClip::stDef_Unit>;

/// A key frame and what follows it up to the next one; nothing if the clip couldn't be encoded.
Units Pictures(const stDef_EncodedClip* pClip, std::int64_t nRecord)
{
    constexpr std::int64_t nGops = stDef_EncodedClip::s_nFrames / stDef_EncodedClip::s_nGop;
    return pClip ? Units(pClip->arUnits)
                       .subspan(static_cast<std::size_t>(nRecord % nGops) * stDef_EncodedClip::s_nGop,
                                stDef_EncodedClip::s_nGop)
                 : Units();
}

std::size_t PicturesSize(Units arUnits)
{
    std::size_t nSize = 0;
    for (const auto& stUnit : arUnits)
        nSize += stUnit.arBytes.size();
    return nSize;
}

std::string VideoImage(const stDef_EncodedClip* pClip, std::int64_t nRecord)
{
    const Units arUnits = Pictures(pClip, nRecord);
    std::string sImage;
    sImage.reserve(PicturesSize(arUnits));
    for (const auto& stUnit : arUnits)
        sImage.append(stUnit.arBytes.begin(), stUnit.arBytes.end());
    return sImage;
}

std::string SoundImage(int nChannel, std::int64_t nRecord)
{
    static std::mutex s_objLock;
    static std::map<int, std::vector<std::uint8_t>> s_mapLoops; // 16 kB a channel; entries never move
    const std::vector<std::uint8_t>* pLoop = nullptr;
    {
        const std::lock_guard objGuard(s_objLock);
        auto& arLoop = s_mapLoops[nChannel];
        if (arLoop.empty())
            arLoop = CSoundMaker::s_F_ar_Make(nChannel);
        pLoop = &arLoop;
    }
    const auto itBegin = pLoop->begin() + nRecord % CSoundMaker::s_nSeconds * CSoundMaker::s_nRate;
    return {itBegin, itBegin + CSoundMaker::s_nRate};
}

std::string EventImage(int nChannel, std::int64_t nRecord, std::int64_t nStamp)
{
    constexpr const char* arTexts[] = {"Motion in window 1",      "Motion in window 2", "Door opened",
                                       "Disk is 80 % full",       "Digital input 3 on", "Digital input 3 off",
                                       "Grüße an die Nachtwache", "倉庫的燈亮了"};
    const auto nText = static_cast<std::size_t>(nRecord * 5 + nChannel) % std::size(arTexts);
    return nsRecordClock::Text(nStamp) + " camera " + std::to_string(nChannel + 1) + ": " + arTexts[nText] + "\n";
}

} // namespace

std::int64_t CRecordTrack::m_F_n_Stamp(std::int64_t nRecord) const
{
    return (nRecord * vm_pRow->nPeriodMs + vm_pRow->nPerPeriod - 1) / vm_pRow->nPerPeriod;
}

std::int64_t CRecordTrack::m_F_n_FirstFrom(std::int64_t nMs) const
{
    return nMs > 0 ? (nMs - 1) * vm_pRow->nPerPeriod / vm_pRow->nPeriodMs + 1 : 0;
}

std::string CRecordTrack::m_F_s_Head() const
{
    if (vm_pRow->cIndexKind == 'A')
        return "codec=PCMU rate=" + std::to_string(CSoundMaker::s_nRate) + "\n";
    if (vm_pRow->cIndexKind == 'T')
        return "codec=TEXT\n";
    const bool bSecond = vm_pRow->eKind == emDef_RecordKind::Second;
    return "codec=H264 width=" + std::to_string(CFrameEncoder::s_F_n_Width(bSecond)) +
           " height=" + std::to_string(CFrameEncoder::s_F_n_Height(bSecond)) +
           " fps=" + std::to_string(stDef_EncodedClip::s_nFps) +
           " frames=" + std::to_string(stDef_EncodedClip::s_nGop) + "\n";
}

std::string CRecordTrack::m_F_s_Image(std::int64_t nRecord) const
{
    if (vm_pRow->cIndexKind == 'A')
        return SoundImage(vm_nChannel, nRecord);
    if (vm_pRow->cIndexKind == 'T')
        return EventImage(vm_nChannel, nRecord, m_F_n_Stamp(nRecord));
    const auto pClip = CClipLibrary::s_F_o_Shared().m_F_p_Get(vm_nChannel, vm_pRow->eKind == emDef_RecordKind::Second);
    return VideoImage(pClip.get(), nRecord);
}

std::size_t CRecordTrack::m_F_n_ImageSize(std::int64_t nRecord) const
{
    if (vm_pRow->cIndexKind == 'A')
        return CSoundMaker::s_nRate;
    if (vm_pRow->cIndexKind == 'T')
        return m_F_s_Image(nRecord).size();
    const auto pClip = CClipLibrary::s_F_o_Shared().m_F_p_Get(vm_nChannel, vm_pRow->eKind == emDef_RecordKind::Second);
    return PicturesSize(Pictures(pClip.get(), nRecord));
}
