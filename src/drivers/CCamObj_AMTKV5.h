#pragma once

#include "drivers/CCamObj_Base.h"

/// Drives the first generation of AMTK cameras. Their streams are numbered profiles.
class FLEETLINK_EXPORT CCamObj_AMTKV5 : public CCamObj_Base
{
public:
    CCamObj_AMTKV5();

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};
