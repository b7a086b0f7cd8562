#include "scene/CSceneMotion.h"

#include "scene/CPtzBoard.h"
#include "scene/CSceneClock.h"
#include "scene/stDef_EncodedClip.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {
constexpr int g_nWidth = 160, g_nHeight = 90;

// Two looks back: the near one sees what is small or just begins, the far one the whole of what is large and plain,
// whose inside doesn't change from picture to picture.
constexpr int g_arBack[] = {3, 8}; // frames

struct stDef_Pixels
{
    int nLeft, nTop, nRight, nBottom;

    explicit stDef_Pixels(const stDef_PictureArea& st)
        : nLeft(At(st.fLeft, g_nWidth)),
          nTop(At(st.fTop, g_nHeight)),
          nRight(std::max(At(st.fRight, g_nWidth), std::min(nLeft + 1, g_nWidth))),
          nBottom(std::max(At(st.fBottom, g_nHeight), std::min(nTop + 1, g_nHeight)))
    {}
    bool Has(int nX, int nY) const { return nX >= nLeft && nX < nRight && nY >= nTop && nY < nBottom; }

private:
    static int At(float fPart, int nSize)
    {
        return static_cast<int>(std::lround(std::clamp(fPart, 0.0F, 1.0F) * static_cast<float>(nSize)));
    }
};
} // namespace

CSceneMotion::CSceneMotion(int nChannel, const CPtzBoard& objPtz)
    : vm_nChannel(nChannel),
      vm_objPtz(objPtz),
      vm_objScene(nChannel, g_nWidth, g_nHeight, stDef_EncodedClip::s_nFrames, stDef_EncodedClip::s_nFps),
      vm_arChange(static_cast<std::size_t>(g_nWidth) * g_nHeight)
{}

void CSceneMotion::m_S_Look(std::int64_t nNowNs)
{
    const int nFrame = CSceneClock::s_F_n_Frame(nNowNs);
    const auto draw = [&](int nBack) -> const std::vector<std::uint8_t>& {
        const double fAgo = static_cast<double>(nBack) / stDef_EncodedClip::s_nFps;
        const int nThen = (nFrame - nBack + stDef_EncodedClip::s_nFrames) % stDef_EncodedClip::s_nFrames;
        return vm_objScene.m_F_o_Draw(nThen, vm_objPtz.m_F_o_View(vm_nChannel, fAgo)).m_F_ar_Pixels();
    };
    std::vector<std::uint8_t> arNow;
    arNow = draw(0); // a copy, for the next picture takes its place
    std::fill(vm_arChange.begin(), vm_arChange.end(), std::uint8_t(0));
    for (const int nBack : g_arBack) {
        const std::vector<std::uint8_t>& arThen = draw(nBack);
        for (std::size_t n = 0; n < vm_arChange.size(); ++n) // the luma plane comes first
            vm_arChange[n] = std::max(vm_arChange[n], static_cast<std::uint8_t>(std::abs(arNow[n] - arThen[n])));
    }
}

int CSceneMotion::m_F_n_Level(const stDef_PictureArea& stArea, int nDifference,
                              std::span<const stDef_PictureArea> arMasked) const
{
    const stDef_Pixels stPixels(stArea);
    const std::vector<stDef_Pixels> arOut(arMasked.begin(), arMasked.end());
    int nAll = 0, nMoved = 0;
    for (int nY = stPixels.nTop; nY < stPixels.nBottom; ++nY) {
        for (int nX = stPixels.nLeft; nX < stPixels.nRight; ++nX) {
            if (std::any_of(arOut.begin(), arOut.end(), [&](const stDef_Pixels& st) { return st.Has(nX, nY); }))
                continue;
            ++nAll;
            nMoved +=
                vm_arChange[static_cast<std::size_t>(nY) * g_nWidth + static_cast<std::size_t>(nX)] >= nDifference;
        }
    }
    return nAll == 0 ? 0 : (nMoved * 100 + nAll / 2) / nAll;
}
