#pragma once

/// What the cameras of a brand can do about motion, as this recorder knows them.
struct stDef_MotionLimits
{
    int nVendorID;
    int nMaxWindows;
    int nCanvasW, nCanvasH; ///< pixels in which rectangles are told
    int nSizeMin, nSizeMax; ///< "ObjectSize"; how much has to move
    int nSensitivityMin, nSensitivityMax;
    bool bTypes; ///< windows include or exclude

    /// Null: the brand has no motion windows, or isn't known.
    static const stDef_MotionLimits* s_F_p_Of(int nVendorID);

    /// A value in the middle of things, of which most moving things are seen.
    int m_F_n_UsualSize() const { return nSizeMin + (nSizeMax - nSizeMin) / 10; }
    int m_F_n_UsualSensitivity() const { return nSensitivityMin + (nSensitivityMax - nSensitivityMin) * 6 / 10; }

    /// @return of the area, in percent: as much has to move
    int m_F_n_Threshold(int nSize) const { return 1 + 40 * (nSize - nSizeMin) / (nSizeMax - nSizeMin); }
    /// @return of brightness, 8..62: a smaller change doesn't count
    int m_F_n_Difference(int nSensitivity) const
    {
        return 62 - 54 * (nSensitivity - nSensitivityMin) / (nSensitivityMax - nSensitivityMin);
    }
};
