#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives FITI cameras, which have a single stream.
class FLEETLINK_EXPORT CCamObj_FITI : public CCamObj_Base
{
public:
    CCamObj_FITI();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
