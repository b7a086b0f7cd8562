#pragma once

#include "rtsp/stDef_StreamMount.h"
#include "scene/CLiveView.h"
#include "scene/stDef_EncodedClip.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

typedef struct _GstElement GstElement;
typedef struct _GstRTSPMedia GstRTSPMedia;

/// Feeds one playing media of a mount, from its clip and its sound, with time stamps of the media's own clock. It
/// pushes only what the media takes.
class CStreamFeed
{
public:
    /// The media must be configured and not yet prepared. Encodes the clip if it is the first use.
    CStreamFeed(GstRTSPMedia* pMedia, std::shared_ptr<const stDef_StreamMount> pMount);
    ~CStreamFeed();
    CStreamFeed(const CStreamFeed&) = delete;
    CStreamFeed& operator=(const CStreamFeed&) = delete;

    /// Called when the media is prepared: what leaves it passes the faults from here on.
    void m_S_OnPrepared(GstRTSPMedia* pMedia);

    /// Called when its client plays: its pictures begin now, near to where the scene is.
    void m_S_OnPlaying();

    /// Pushes what is due and tells when to be called next; times in nanoseconds of the steady clock. For one thread.
    std::int64_t m_F_n_Push(std::int64_t nNowNs);

private:
    struct stDef_Track
    {
        GstElement* pSource = nullptr; ///< an appsrc
        std::int64_t nPeriodNs = 0;
        std::int64_t nDueNs = 0;
    };
    template <typename Piece>
    void m_S_PushTrack(stDef_Track& stTrack, std::int64_t nNowNs, std::int64_t nBaseNs, Piece nextPiece);
    const std::vector<std::uint8_t>& m_F_ar_NextPicture();
    const std::vector<std::uint8_t>& m_F_ar_Spoilt(const std::vector<std::uint8_t>& arUnit);
    const std::vector<std::uint8_t>* m_F_p_LivePicture();
    const std::vector<std::uint8_t>& m_F_ar_NextSound();
    bool m_F_b_Begin(std::int64_t nNowNs, std::int64_t nBaseNs);
    void m_S_ChooseClip();
    void m_S_SkipToKey();
    void m_S_TakeKey(std::int64_t nNowNs);

    std::shared_ptr<const stDef_StreamMount> vm_pMount;
    std::shared_ptr<const stDef_EncodedClip> vm_pClip;
    std::unique_ptr<CLiveView> vm_pLive; ///< null while the clip plays
    std::vector<std::uint8_t> vm_arSound;
    std::vector<std::uint8_t> vm_arPiece;
    std::vector<std::uint8_t> vm_arSpoilt;
    std::shared_ptr<std::atomic<std::uint64_t>> vm_pStartNs; ///< of the media's clock; what is older isn't sent
    stDef_Track vm_stVideo;
    stDef_Track vm_stAudio;
    std::size_t vm_nFrame = 0;
    std::size_t vm_nSound = 0;
    std::atomic<bool> vm_bPlaying{false};
    bool vm_bOther = false;
    bool vm_bHeld = false; ///< a pause was kept; a key frame comes next
};
