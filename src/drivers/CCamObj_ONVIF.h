#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives ONVIF cameras, whose streams are told by tokens.
class FLEETLINK_EXPORT CCamObj_ONVIF : public CCamObj_Base
{
public:
    CCamObj_ONVIF();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
