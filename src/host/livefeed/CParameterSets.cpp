#include "host/livefeed/CParameterSets.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include "host/livefeed/CRingCodec.h"
#include "host/livefeed/CStreamSyntax.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

constexpr std::array<std::uint8_t, 4> StartCode = {0, 0, 0, 1};
constexpr std::size_t MaxFrame = 64u << 20;

/// The parameter sets of some units, each with a start code of four bytes.
struct stDef_Gathered
{
    std::array<std::uint8_t, st_RingParam::MaxExtra> arBytes{};
    std::uint32_t nSize = 0;
    bool bNeeded = false;
    bool bOptional = false;
    bool bTooLong = false;

    void m_S_Append(const std::uint8_t* pUnit, const std::uint8_t* pEnd)
    {
        while (pEnd > pUnit && pEnd[-1] == 0) // a longer start code's zeros, or padding: no unit ends with them
            --pEnd;
        const auto nUnit = static_cast<std::size_t>(pEnd - pUnit);
        bTooLong = bTooLong || nSize + StartCode.size() + nUnit > arBytes.size();
        if (bTooLong)
            return;
        std::copy(StartCode.begin(), StartCode.end(), arBytes.begin() + nSize);
        std::copy(pUnit, pEnd, arBytes.begin() + nSize + StartCode.size());
        nSize += static_cast<std::uint32_t>(StartCode.size() + nUnit);
    }
};

/// Gathers the sets up to the first picture.
stDef_Gathered Gather(emDef_RingCodec nCodec, const std::uint8_t* pData, std::size_t nSize)
{
    using emDef_Kind = stDef_StreamUnit::emDef_Kind;
    stDef_Gathered stFound;
    std::size_t nNext = 0;
    for (std::size_t n = CStreamSyntax::s_F_n_NextStart(pData, nSize, 0); n + 3 < nSize; n = nNext) {
        const std::uint8_t* pUnit = pData + n + 3;
        const emDef_Kind nKind = CStreamSyntax::s_F_o_Unit(nCodec, pUnit, nSize - n - 3).nKind;
        if (nKind == emDef_Kind::Picture)
            break;
        nNext = CStreamSyntax::s_F_n_NextStart(pData, nSize, n + 3);
        if (nKind == emDef_Kind::Other)
            continue;
        stFound.m_S_Append(pUnit, pData + nNext);
        (nKind == emDef_Kind::Needed ? stFound.bNeeded : stFound.bOptional) = true;
    }
    return stFound;
}

struct stDef_ContextFree
{
    void operator()(AVCodecContext* p) const { avcodec_free_context(&p); }
    void operator()(AVCodecParserContext* p) const { av_parser_close(p); }
};

bool SetExtra(AVCodecContext& stContext, const st_RingParam& stParam)
{
    stContext.extradata = static_cast<std::uint8_t*>(av_mallocz(stParam.nExtraSize + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!stContext.extradata)
        return false;
    std::memcpy(stContext.extradata, stParam.arExtra.data(), stParam.nExtraSize);
    stContext.extradata_size = static_cast<int>(stParam.nExtraSize);
    return true;
}

/// Size from a JPEG's frame header, which the parsers leave to the decoder.
void FindJpegSize(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize)
{
    const auto word = [pData](std::size_t n) { return pData[n] << 8 | pData[n + 1]; };
    for (std::size_t n = 2; n + 9 <= nSize && pData[n] == 0xff; n += 2u + static_cast<std::size_t>(word(n + 2))) {
        const int nMarker = pData[n + 1];
        // C0 to CF begin a frame, but for tables (C4, CC) and an extension (C8).
        if (nMarker >= 0xc0 && nMarker <= 0xcf && nMarker != 0xc4 && nMarker != 0xc8 && nMarker != 0xcc) {
            stParam.nHeight = word(n + 5);
            stParam.nWidth = word(n + 7);
            return;
        }
    }
}

} // namespace

CParameterSets::emDef_Taken CParameterSets::s_F_n_Take(st_RingParam& stParam, const std::uint8_t* pData,
                                                       std::size_t nSize)
{
    if (!CStreamSyntax::s_F_b_HasUnits(stParam.nCodec))
        return emDef_Taken::Nothing;
    const stDef_Gathered stFound = Gather(stParam.nCodec, pData, nSize);
    if (stFound.bTooLong)
        return emDef_Taken::TooLong;
    const bool bSame = stFound.nSize == stParam.nExtraSize && stFound.arBytes == stParam.arExtra;
    if (!stFound.bNeeded || !stFound.bOptional || bSame)
        return emDef_Taken::Nothing;
    stParam.arExtra = stFound.arBytes;
    stParam.nExtraSize = stFound.nSize;
    return emDef_Taken::New;
}

CParameterSets::emDef_Taken CParameterSets::s_F_n_Describe(st_RingParam& stParam, const std::uint8_t* pExtra,
                                                           std::size_t nSize)
{
    stDef_Gathered stFound;
    if (stParam.nCodec == emDef_RingCodec::H264 || stParam.nCodec == emDef_RingCodec::H265) {
        stFound = Gather(stParam.nCodec, pExtra, nSize);
    } else if (nSize <= stFound.arBytes.size()) {
        std::copy_n(pExtra, nSize, stFound.arBytes.begin());
        stFound.nSize = static_cast<std::uint32_t>(nSize);
    } else {
        stFound.bTooLong = true;
    }
    if (stFound.bTooLong)
        return emDef_Taken::TooLong;
    stParam.arExtra = stFound.arBytes;
    stParam.nExtraSize = stFound.nSize;
    return stFound.nSize > 0 ? emDef_Taken::New : emDef_Taken::Nothing;
}

void CParameterSets::s_S_FindSize(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize)
{
    stParam.nWidth = 0;
    stParam.nHeight = 0;
    if (stParam.nCodec == emDef_RingCodec::MJPEG)
        return FindJpegSize(stParam, pData, nSize);
    const AVCodecID nCodec = static_cast<AVCodecID>(CRingCodec::s_F_n_ToAv(stParam.nCodec));
    const std::unique_ptr<AVCodecContext, stDef_ContextFree> pContext(avcodec_alloc_context3(nullptr));
    const std::unique_ptr<AVCodecParserContext, stDef_ContextFree> pParser(av_parser_init(nCodec));
    if (!pContext || !pParser || nSize > MaxFrame || !SetExtra(*pContext, stParam))
        return;
    pContext->codec_id = nCodec;
    pContext->codec_type = AVMEDIA_TYPE_VIDEO;
    pParser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
    // The library reads past the end of what it is given.
    std::vector<std::uint8_t> arPadded(pData, pData + nSize);
    arPadded.resize(nSize + AV_INPUT_BUFFER_PADDING_SIZE);
    std::uint8_t* pOut = nullptr;
    int nOut = 0;
    av_parser_parse2(pParser.get(), pContext.get(), &pOut, &nOut, arPadded.data(), static_cast<int>(nSize),
                     AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
    // Some parsers tell the size by themselves, others through the context.
    const int nWidth = pParser->width > 0 ? pParser->width : pContext->width;
    const int nHeight = pParser->width > 0 ? pParser->height : pContext->height;
    if (nWidth > 0 && nHeight > 0) {
        stParam.nWidth = nWidth;
        stParam.nHeight = nHeight;
    }
}
