#pragma once

#include "CEncodedClip.h"

#include <atomic>
#include <cstdint>
#include <memory>

typedef struct _GstElement GstElement;

/// What the faults of a mount do to its feeds, shared with the thread that sets them.
struct stDef_FeedFaults
{
    std::atomic<bool> bPaused{false};
    std::atomic<bool> bOtherClip{false};
    std::atomic<long long> nJumpMs{0}; ///< sum of all jumps
};

/// Feeds the two sources of one playing mount from the clip, by the time that has passed since it began. Belongs to the
/// streaming thread.
class CStreamFeed
{
public:
    /// Takes over the two references.
    CStreamFeed(GstElement* pVideo, GstElement* pAudio, std::shared_ptr<const stDef_EncodedClip> pClip,
                std::shared_ptr<const stDef_EncodedClip> pOther, int nChannel,
                std::shared_ptr<stDef_FeedFaults> pFaults);
    ~CStreamFeed();
    CStreamFeed(const CStreamFeed&) = delete;
    CStreamFeed& operator=(const CStreamFeed&) = delete;

    /// Pushes what is due; false once nobody takes it any more.
    bool m_F_b_PushDue();

private:
    bool m_F_b_PushVideo(std::int64_t nDueNs);
    bool m_F_b_PushAudio(std::int64_t nDueNs);

    GstElement* vm_pVideo;
    GstElement* vm_pAudio;
    std::shared_ptr<const stDef_EncodedClip> vm_pClip;
    std::shared_ptr<const stDef_EncodedClip> vm_pOther;
    std::vector<std::uint8_t> vm_arTone; ///< one second of PCMU
    std::shared_ptr<stDef_FeedFaults> vm_pFaults;
    std::int64_t vm_nStartNs;
    std::int64_t vm_nNextFrame = 0; ///< since the start
    std::int64_t vm_nNextSound = 0; ///< pieces since the start
    bool vm_bNeedKey = false;       ///< after a gap a key frame comes first
    bool vm_bOther = false;
};
