#include "host/livefeed/CStreamSyntax.h"

#include <cstring>

namespace {

using emDef_Kind = stDef_StreamUnit::emDef_Kind;

stDef_StreamUnit UnitH264(const std::uint8_t* p, std::size_t nSize)
{
    const std::uint8_t nSecond = nSize > 1 ? p[1] : 0;
    const bool bFirst = (nSecond & 0x80) != 0; // first macroblock number 0
    switch (const int nType = p[0] & 0x1f) {
    case 1:
    case 2:
    case 5: // IDR
        return {emDef_Kind::Picture, bFirst, nType == 5};
    case 3: // data partitions B and C
    case 4:
        return {emDef_Kind::Picture, false, false};
    case 6: // SEI; a recovery point stands in for the IDR of a stream that refreshes bit by bit
        return {emDef_Kind::Other, true, nSecond == 6};
    case 7: // SPS
        return {emDef_Kind::Needed, true, false};
    case 8: // PPS
        return {emDef_Kind::Optional, true, false};
    default:
        return {emDef_Kind::Other, nType == 9 || (nType >= 14 && nType <= 18), false};
    }
}

stDef_StreamUnit UnitH265(const std::uint8_t* p, std::size_t nSize)
{
    const int nType = p[0] >> 1 & 0x3f;
    if (nType < 32) // 16 to 23 are random access points
        return {emDef_Kind::Picture, nSize > 2 && (p[2] & 0x80) != 0, nType >= 16 && nType <= 23};
    if (nType == 33) // SPS
        return {emDef_Kind::Needed, true, false};
    if (nType == 32 || nType == 34) // VPS, PPS
        return {emDef_Kind::Optional, true, false};
    const bool bAhead = nType == 35 || nType == 39 || (nType >= 41 && nType <= 44) || nType >= 48;
    return {emDef_Kind::Other, bAhead, false};
}

stDef_StreamUnit UnitMpeg4(const std::uint8_t* p, std::size_t nSize)
{
    if (p[0] == 0xb6) // a whole picture, of type I if its first two bits are 0
        return {emDef_Kind::Picture, true, nSize > 1 && (p[1] & 0xc0) == 0};
    if (p[0] >= 0x20 && p[0] <= 0x2f) // video object layer
        return {emDef_Kind::Needed, true, false};
    if (p[0] < 0x20 || p[0] == 0xb0 || p[0] == 0xb5) // video object, its sequence
        return {emDef_Kind::Optional, true, false};
    return {emDef_Kind::Other, p[0] == 0xb3, false}; // group of pictures
}

} // namespace

bool CStreamSyntax::s_F_b_HasUnits(emDef_RingCodec nCodec)
{
    return nCodec == emDef_RingCodec::H264 || nCodec == emDef_RingCodec::H265 || nCodec == emDef_RingCodec::MPEG4;
}

std::size_t CStreamSyntax::s_F_n_NextStart(const std::uint8_t* pData, std::size_t nSize, std::size_t n)
{
    for (; n + 3 <= nSize; ++n) {
        const auto* p = static_cast<const std::uint8_t*>(std::memchr(pData + n, 1, nSize - n));
        if (!p)
            break;
        n = static_cast<std::size_t>(p - pData);
        if (n >= 2 && pData[n - 1] == 0 && pData[n - 2] == 0)
            return n - 2;
    }
    return nSize;
}

stDef_StreamUnit CStreamSyntax::s_F_o_Unit(emDef_RingCodec nCodec, const std::uint8_t* pUnit, std::size_t nSize)
{
    if (nCodec == emDef_RingCodec::MPEG4)
        return UnitMpeg4(pUnit, nSize);
    return nCodec == emDef_RingCodec::H264 ? UnitH264(pUnit, nSize) : UnitH265(pUnit, nSize);
}
