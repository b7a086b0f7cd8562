#include "drivers/CCamObj_AMTKV5.h"

#include "drivers/AmtkTemplate.h"
#include "drivers/CTemplateMap.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;

namespace {

constexpr nsDriverKeys::Group g_arGroups[] = {
    nsDriverKeys::Address,      nsDriverKeys::Device,    nsDriverKeys::Profile,    nsDriverKeys::LowProfile,
    nsDriverKeys::ProfileNames, nsDriverKeys::Format,    nsDriverKeys::Resolution, nsDriverKeys::Main,
    nsDriverKeys::Low,          nsDriverKeys::LowBitrate};
constexpr stDef_DriverRow g_stRow{g_arGroups, ""};

} // namespace

CCamObj_AMTKV5::CCamObj_AMTKV5() : CCamObj_Base(g_stRow) {}

void CCamObj_AMTKV5::m_S_MapTemplate(CTemplateMap& objMap) const
{
    AmtkTemplate::s_S_Map(objMap, u"Bitrate"_s);
}
