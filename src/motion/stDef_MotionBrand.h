#pragma once

#include "toolkit/form/CTextSource.h"

/// In what the motion windows of one brand differ from those of another.
struct stDef_MotionBrand
{
    bool bWindowType; ///< a window includes or excludes what moves in it
    Text stFirst;     ///< what the first value is called; it is stored as "ObjectSize" whatever that says
    bool bNameEditable;
    int nTimeoutMs;        ///< of a request
    bool bEnablesAfterAdd; ///< Add enables Delete and Update before it looks which row is selected
};
