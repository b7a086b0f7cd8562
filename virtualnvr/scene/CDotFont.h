#pragma once

/// A font of 5 by 7 dots with what a camera writes into its pictures: capital letters, digits, blank and ":.-&".
class CDotFont
{
public:
    static constexpr int s_nColumns = 5;
    static constexpr int s_nRows = 7;

    /// True if the dot is set. Characters that the font lacks are blank.
    static bool s_F_b_Dot(char cGlyph, int nColumn, int nRow);
};
