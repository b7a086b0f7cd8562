#include "drivers/stDef_CameraTemplate.h"

#include <algorithm>
#include <iterator>

namespace {

using Template = stDef_CameraTemplate;

constexpr char16_t Node[] = u"/root/system/camera/template";
constexpr int AssumedRate = 30; ///< frames a second

constexpr stDef_Member<Template> g_astRows[] = {
    {"Resolution", &Template::nResolution}, {"FPS", &Template::nFPS},         {"RateCtrl", &Template::nRateCtrl},
    {"Quality", &Template::nQuality},       {"Account", &Template::sAccount}, {"Password", &Template::sPassword},
};

constexpr stDef_TemplateResolution g_astResolutions[] = {
    {"MAX", stDef_TemplateResolution::Unlimited},
    {"5M", 2592},
    {"3M", 2048},
    {"2M", 1920},
    {"1.3M", 1280},
    {"VGA", 720},
};

const stDef_Member<Template>& RowOf(nsMembers::Pointer<Template> pMember)
{
    return *std::find_if(std::begin(g_astRows), std::end(g_astRows),
                         [pMember](const stDef_Member<Template>& row) { return row.pMember == pMember; });
}

QString Path()
{
    return QString::fromUtf16(Node);
}

} // namespace

std::span<const stDef_TemplateResolution> stDef_CameraTemplate::s_F_ar_Resolutions()
{
    return g_astResolutions;
}

const stDef_TemplateResolution* stDef_CameraTemplate::s_F_p_Resolution(int nResolution)
{
    const bool bListed = nResolution >= 0 && nResolution < static_cast<int>(std::size(g_astResolutions));
    return bListed ? &g_astResolutions[nResolution] : nullptr;
}

stDef_CameraTemplate stDef_CameraTemplate::s_F_o_Read(const CXmlObj& xmlSystem)
{
    stDef_CameraTemplate st;
    nsMembers::Read<Template>(xmlSystem, Path(), g_astRows, st);
    return st;
}

stDef_CameraTemplate stDef_CameraTemplate::s_F_o_ReadForCamera(const CXmlObj& xmlSystem)
{
    stDef_CameraTemplate st = s_F_o_Read(xmlSystem);
    stDef_Member<Template> rowRate = RowOf(&Template::nFPS);
    rowRate.nDefault = AssumedRate;
    nsMembers::ReadOne(xmlSystem, Path(), rowRate, st);
    return st;
}

void stDef_CameraTemplate::m_S_Write(CXmlObj& xmlSystem) const
{
    nsMembers::Write<Template>(xmlSystem, Path(), g_astRows, *this);
}

void stDef_CameraTemplate::m_S_WriteOne(CXmlObj& xmlSystem, nsMembers::Pointer<stDef_CameraTemplate> pMember) const
{
    nsMembers::WriteOne(xmlSystem, Path(), RowOf(pMember), *this);
}
