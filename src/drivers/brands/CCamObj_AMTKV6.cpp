#include "drivers/CTemplateMap.h"
#include "drivers/brands/AmtkTemplate.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;

namespace {

constexpr stDef_DriverRow g_stRow{AmtkTemplate::s_arGroups};

// Where an entry tells the bit rate for a way of rate control; empty: nowhere, it stays as it is.
QString BitrateKey(int nRateControl)
{
    switch (nRateControl) {
    case 1:
        return u"Bitrate"_s;
    case 2:
        return u"MaxTargetBitrate"_s;
    default:
        return {};
    }
}

} // namespace

CCamObj_AMTKV6::CCamObj_AMTKV6() : CCamObj_Base(g_stRow) {}

void CCamObj_AMTKV6::m_S_MapTemplate(CTemplateMap& objMap) const
{
    AmtkTemplate::s_S_Map(objMap, BitrateKey(objMap.m_F_o_Wanted().nRateCtrl));
}
