#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives PIXORD cameras, whose profiles are numbered by their place in the resolution list.
class FLEETLINK_EXPORT CCamObj_PIXORD : public CCamObj_Base
{
public:
    CCamObj_PIXORD();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
