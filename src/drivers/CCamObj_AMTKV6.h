#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives the second generation of AMTK cameras, which tell a bit rate for each way of rate control.
class FLEETLINK_EXPORT CCamObj_AMTKV6 : public CCamObj_Base
{
public:
    CCamObj_AMTKV6();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
