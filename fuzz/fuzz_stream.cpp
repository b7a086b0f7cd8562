#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "host/livefeed/CAccessUnit.h"
#include "host/livefeed/CParameterSets.h"

extern "C" {
#include <libavutil/log.h>
}

/// Video as it comes from a recorder: the codec, the size of the pieces, then their bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 2)
        return 0;
    av_log_set_level(AV_LOG_QUIET);
    constexpr emDef_RingCodec arCodecs[] = {emDef_RingCodec::H264, emDef_RingCodec::H265, emDef_RingCodec::MPEG4};
    const emDef_RingCodec nCodec = arCodecs[pData[0] % 3];
    const std::size_t nPiece = 1u + pData[1];
    CAccessUnit objUnit;
    objUnit.m_S_Open(nCodec);
    st_RingParam stParam;
    stParam.nCodec = nCodec;
    for (std::size_t n = 2; n < nSize; n += nPiece) {
        if (!objUnit.m_F_b_Add(pData + n, std::min(nPiece, nSize - n), 0, 0))
            continue;
        const auto& arBytes = objUnit.m_F_ar_Bytes();
        Expect(!arBytes.empty() && arBytes.size() < nSize, "a picture is made of what came");
        CParameterSets::s_F_n_Describe(stParam, pData, nSize);
        if (CParameterSets::s_F_n_Take(stParam, arBytes.data(), arBytes.size()) == CParameterSets::emDef_Taken::New)
            CParameterSets::s_S_FindSize(stParam, arBytes.data(), arBytes.size());
        Expect(stParam.nExtraSize <= st_RingParam::MaxExtra, "extra bytes fit their place");
    }
    return 0;
}
