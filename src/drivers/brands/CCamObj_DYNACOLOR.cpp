#include "drivers/CTemplateMap.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;
using emDef_Streams = CTemplateMap::emDef_Streams;

namespace {

constexpr nsDriverKeys::Group g_arGroups[] = {nsDriverKeys::Address,    nsDriverKeys::Device, nsDriverKeys::Profile,
                                              nsDriverKeys::Resolution, nsDriverKeys::Main,   nsDriverKeys::Low,
                                              nsDriverKeys::LowBitrate};
constexpr stDef_DriverRow g_stRow{g_arGroups};

} // namespace

CCamObj_DYNACOLOR::CCamObj_DYNACOLOR() : CCamObj_Base(g_stRow) {}

void CCamObj_DYNACOLOR::m_S_MapTemplate(CTemplateMap& objMap) const
{
    if (const auto nPick = objMap.m_F_o_Pick())
        objMap.m_S_Take(*nPick, u"Resolution"_s, u"Resolution"_s);
    // The limits are those of all entries together, and hold without a pick.
    objMap.m_S_SetRate(u"/root/Support/Resolution"_s, emDef_Streams::Both);
    objMap.m_S_SetQuality(objMap.m_F_o_Abilities().m_F_o_Limits(u"/root/Support/Quality_M"_s, u"Min"_s, u"Max"_s),
                          emDef_Streams::Main);
    objMap.m_S_SetQuality(objMap.m_F_o_Abilities().m_F_o_Limits(u"/root/Support/Quality_S"_s, u"Min"_s, u"Max"_s),
                          emDef_Streams::Low);
    objMap.m_S_SetRateControl(emDef_Streams::Both);
}
