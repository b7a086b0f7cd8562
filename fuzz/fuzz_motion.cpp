#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Expect.h"
#include "motion/CMotionReader.h"

/// A part of a camera's motion stream; its length decides how many motion windows the camera has.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static CMotionLights s_objLights;
    const std::string_view sPart(reinterpret_cast<const char*>(pData), nSize);
    const int nWindows = static_cast<int>(nSize % 17);
    s_objLights.m_S_Reset(nWindows);
    CMotionReader::s_S_Take(sPart, s_objLights);

    int nLit = 0;
    for (int i = 0; i < CMotionLights::Most; ++i) {
        Expect(i < nWindows || !s_objLights.m_F_b_Lit(i), "no window is lit that there isn't");
        nLit += s_objLights.m_F_b_Lit(i) ? 1 : 0;
    }
    constexpr std::string_view Word = "motion=";
    int nTold = 0;
    for (std::size_t nAt = sPart.find(Word); nAt != std::string_view::npos; nAt = sPart.find(Word, nAt + 1))
        ++nTold;
    Expect(nLit <= nTold, "a window is lit only where the stream tells of its motion");
    return 0;
}
