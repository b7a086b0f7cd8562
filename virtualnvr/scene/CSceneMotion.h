#pragma once

#include "scene/CSceneMaker.h"

#include <cstdint>
#include <span>
#include <vector>

class CPtzBoard;

/// A rectangle in a picture, in parts of its width and height.
struct stDef_PictureArea
{
    float fLeft, fTop, fRight, fBottom;
};

/// Finds what moves before a camera, by comparing its small pictures of now and of the half second before; a camera
/// that turns moves all of its picture. Captions don't count. For one thread.
class CSceneMotion
{
public:
    /// The board must outlive this object.
    CSceneMotion(int nChannel, const CPtzBoard& objPtz);

    /// Compares the pictures that streams show at this time of the scene's clock, each as its camera looked then.
    void m_S_Look(std::int64_t nNowNs);

    /// How much of an area moved as m_S_Look found it, in percent.
    /// @param nDifference 1..255: less of a change in brightness doesn't count
    /// @param arMasked    areas that are left out
    int m_F_n_Level(const stDef_PictureArea& stArea, int nDifference,
                    std::span<const stDef_PictureArea> arMasked = {}) const;

private:
    const int vm_nChannel;
    const CPtzBoard& vm_objPtz;
    CSceneMaker vm_objScene;
    std::vector<std::uint8_t> vm_arChange; ///< greatest difference of each pixel's luma
};
