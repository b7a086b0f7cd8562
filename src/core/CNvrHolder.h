#pragma once

#include <memory>

#include "core/CWndNvrBase.h"

struct stDef_NvrRelease
{
    void operator()(CWndNvrBase* pNvr) const { CWndNvrBase::s_S_ReleaseNvrObject(&pNvr); }
};

/// Holds a connection object and gives it back, as `CWndNvrBase::s_S_ReleaseNvrObject` does, when it goes itself, is
/// reset or gets another one. May be empty.
using CNvrHolder = std::unique_ptr<CWndNvrBase, stDef_NvrRelease>;
