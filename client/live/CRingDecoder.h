#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "live/CPictureDecoder.h"

/// A worker thread that waits on one video ring and keeps the newest picture of it, scaled for a cell. It finds the
/// ring when it comes, follows it through changes of parameters and losses, and waits for its return when it goes.
///
/// Pictures wait in one place only: one that nobody took is replaced by the next. The operations are for the owner's
/// thread.
class CRingDecoder
{
public:
    /// `fnPicture` is called on the worker thread whenever a picture is ready to be taken; it must not block.
    explicit CRingDecoder(std::function<void()> fnPicture);
    ~CRingDecoder(); ///< ends the thread, within some 50 ms
    CRingDecoder(const CRingDecoder&) = delete;
    CRingDecoder& operator=(const CRingDecoder&) = delete;

    /// Begins with the video ring of that recorder, channel and stream, of the environment of that instance.
    void m_S_Start(int nNvrID, int nChannel, int nStream, const std::string& sInstance);
    /// Tells the thread to end and returns at once.
    void m_S_RequestStop();
    void m_S_Stop();

    /// Size of the cell's picture area, device pixels. Nothing is decoded to pixels while it is empty.
    void m_S_SetCellSize(int nWidth, int nHeight);

    /// From now on shows only what arrives after this call, from a key frame on: a ring still holds the pictures of the
    /// connection before.
    void m_S_SkipOld();

    /// Exchanges the caller's picture for the newest one; false if there is none since the last call.
    bool m_F_b_TakePicture(stDef_Picture& stPicture);

    /// What keeps pictures from coming, as far as the ring and the decoder tell.
    emDef_RingLack m_F_n_Lack() const;

    /// Asks for the newest picture in the stream's own size. It is there a moment later, and `fnPicture` is called.
    void m_S_RequestSnapshot();
    /// The picture that was asked for; false if there is none.
    bool m_F_b_TakeSnapshot(stDef_Picture& stPicture);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
