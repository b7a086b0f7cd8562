#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives DYNACOLOR cameras: one range of rates for all resolutions, and no codec with them.
class FLEETLINK_EXPORT CCamObj_DYNACOLOR : public CCamObj_Base
{
public:
    CCamObj_DYNACOLOR();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
