#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives SMAX cameras, whose low stream is MJPEG with a range of rates of its own.
class FLEETLINK_EXPORT CCamObj_SMAX : public CCamObj_Base
{
public:
    CCamObj_SMAX();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
