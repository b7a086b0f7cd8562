#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives ZAVIO cameras, which have one range of qualities.
class FLEETLINK_EXPORT CCamObj_ZAVIO : public CCamObj_Base
{
public:
    CCamObj_ZAVIO();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
