#include "drivers/CTemplateMap.h"
#include "drivers/brands/AmtkTemplate.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;

namespace {

constexpr stDef_DriverRow g_stRow{AmtkTemplate::s_arGroups, ""};

} // namespace

CCamObj_AMTKV5::CCamObj_AMTKV5() : CCamObj_Base(g_stRow) {}

void CCamObj_AMTKV5::m_S_MapTemplate(CTemplateMap& objMap) const
{
    AmtkTemplate::s_S_Map(objMap, u"Bitrate"_s);
}
