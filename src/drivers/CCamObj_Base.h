#pragma once

/// One camera of a recorder, as its brand's driver sees it.
class CCamObj_Base
{
public:
    virtual ~CCamObj_Base() = default;

    /// Sets the caller's pointer to null and deletes this object.
    virtual void m_S_Release(CCamObj_Base** ppObj) = 0;
};
