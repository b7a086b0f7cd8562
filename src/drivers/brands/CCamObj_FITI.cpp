#include "drivers/CTemplateMap.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"

using namespace Qt::StringLiterals;
using emDef_Streams = CTemplateMap::emDef_Streams;

namespace {

constexpr nsDriverKeys::Group g_arGroups[] = {nsDriverKeys::Address, nsDriverKeys::Device,     nsDriverKeys::Profile,
                                              nsDriverKeys::Format,  nsDriverKeys::Resolution, nsDriverKeys::Main};
constexpr stDef_DriverRow g_stRow{g_arGroups};

} // namespace

CCamObj_FITI::CCamObj_FITI() : CCamObj_Base(g_stRow) {}

void CCamObj_FITI::m_S_MapTemplate(CTemplateMap& objMap) const
{
    if (const auto nPick = objMap.m_F_o_Pick()) {
        objMap.m_S_Take(*nPick, u"ResolutionID"_s, u"ProfileID"_s);
        objMap.m_S_Take(*nPick, u"Resolution"_s, u"Resolution"_s);
        objMap.m_S_SetRate(CAbilities::s_F_s_Entry(*nPick), emDef_Streams::Main);
    }
    objMap.m_S_SetRateControl(emDef_Streams::Main);
}
