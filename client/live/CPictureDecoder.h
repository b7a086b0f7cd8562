#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "fleetlink/fleetlink.h"

/// A picture ready to paint: 32 bits a pixel, 0xffRRGGBB in host byte order, in device pixels. The buffer keeps its
/// capacity from picture to picture.
struct stDef_Picture
{
    std::vector<std::uint32_t> arPixels;
    int nWidth = 0;
    int nHeight = 0;
    int nStride = 0;                 ///< pixels a line
    std::uint64_t nSerial = 0;       ///< counts the pictures of one decoder from 1; 0: no picture
    std::uint64_t nPacketSerial = 0; ///< packet of the ring that completed it
};

/// Turns the packets of a video ring into pictures of the size that a cell wants. Trusts nothing in a packet: what
/// can't be decoded is skipped, and decoding begins again at the next key frame. One object belongs to one thread.
class CPictureDecoder
{
public:
    CPictureDecoder();
    ~CPictureDecoder();
    CPictureDecoder(const CPictureDecoder&) = delete;
    CPictureDecoder& operator=(const CPictureDecoder&) = delete;

    /// Makes ready for a stream of these parameters; false if its codec is none that can be decoded here.
    bool m_F_b_Open(const st_RingParam& stParam);
    void m_S_Close();
    /// Forgets what came before, after packets were lost: pictures come again from the next key frame on.
    void m_S_Flush();

    /// Decodes one packet. True if it brought a new picture, which replaces the one that was not rendered yet.
    bool m_F_b_Decode(const st_RingFrame& stFrame);
    /// Scales the latest picture into the largest rectangle of its own shape that fits the cell (device pixels).
    /// False if there is none or its size is beyond reason.
    bool m_F_b_Render(int nCellWidth, int nCellHeight, stDef_Picture& stPicture);
    /// The same in the stream's own size.
    bool m_F_b_RenderWhole(stDef_Picture& stPicture);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
