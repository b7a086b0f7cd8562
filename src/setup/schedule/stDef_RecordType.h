#pragma once

#include <QtGlobal>
#include <span>

#include "toolkit/form/CTextSource.h"

/// On what a record of a schedule records, and how it is shown.
struct stDef_RecordType
{
    int nMode; ///< as the document has it
    stDef_Text stText;
    quint32 nColor; ///< of its blocks, red in the low byte

    /// In the order of their modes.
    static std::span<const stDef_RecordType> s_F_ar_All();
    /// Null for a mode that no recorder has.
    static const stDef_RecordType* s_F_p_Of(int nMode);
    static const stDef_RecordType* s_F_p_OfColor(quint32 nColor);
    /// A neutral one for a mode that no recorder has.
    static quint32 s_F_n_ColorOf(int nMode);
};
