#include "drivers/CTemplateMap.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;
using emDef_Streams = CTemplateMap::emDef_Streams;

namespace {

constexpr nsDriverKeys::Group g_arGroups[] = {nsDriverKeys::Address, nsDriverKeys::Device,     nsDriverKeys::Profile,
                                              nsDriverKeys::Format,  nsDriverKeys::Resolution, nsDriverKeys::Main,
                                              nsDriverKeys::Low};
constexpr stDef_DriverRow g_stRow{g_arGroups};

} // namespace

CCamObj_SMAX::CCamObj_SMAX() : CCamObj_Base(g_stRow) {}

void CCamObj_SMAX::m_S_MapTemplate(CTemplateMap& objMap) const
{
    if (const auto nPick = objMap.m_F_o_Pick()) {
        objMap.m_S_TakeNumbered(*nPick);
        objMap.m_S_SetRate(CAbilities::s_F_s_Entry(*nPick), emDef_Streams::Main);
    }
    // The limits stand the wrong way round here, and are meant to: a wish above the minimum gives the minimum.
    const auto stLowRates = objMap.m_F_o_Abilities().m_F_o_Limits(u"/root/Support"_s, u"MaxMjpgFPS"_s, u"MinMjpgFPS"_s);
    objMap.m_S_Set(u"LowFPS"_s, CAbilities::s_F_n_ClampRate(objMap.m_F_o_Wanted().nFPS, stLowRates));
    objMap.m_S_SetRateControl(emDef_Streams::Both);
}
