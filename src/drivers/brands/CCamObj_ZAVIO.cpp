#include "drivers/CTemplateMap.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;
using emDef_Streams = CTemplateMap::emDef_Streams;

namespace {

constexpr nsDriverKeys::Group g_arGroups[] = {nsDriverKeys::Address,    nsDriverKeys::Device, nsDriverKeys::Profile,
                                              nsDriverKeys::LowProfile, nsDriverKeys::Format, nsDriverKeys::Resolution,
                                              nsDriverKeys::Main,       nsDriverKeys::Low,    nsDriverKeys::LowBitrate};
constexpr stDef_DriverRow g_stRow{g_arGroups};

} // namespace

CCamObj_ZAVIO::CCamObj_ZAVIO() : CCamObj_Base(g_stRow) {}

void CCamObj_ZAVIO::m_S_MapTemplate(CTemplateMap& objMap) const
{
    if (const auto nPick = objMap.m_F_o_Pick()) {
        objMap.m_S_TakeNumbered(*nPick);
        objMap.m_S_Take(*nPick, u"Codec"_s, u"Format"_s);
        objMap.m_S_SetRate(CAbilities::s_F_s_Entry(*nPick), emDef_Streams::Both);
    }
    objMap.m_S_SetQuality(objMap.m_F_o_Abilities().m_F_o_Limits(u"/root/Support/Quality"_s, u"Min"_s, u"Max"_s),
                          emDef_Streams::Both);
    objMap.m_S_SetRateControl(emDef_Streams::Both);
}
