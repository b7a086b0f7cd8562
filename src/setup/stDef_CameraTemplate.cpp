#include "setup/stDef_CameraTemplate.h"

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t Node[] = u"/root/system/camera/template";

QString Path()
{
    return QString::fromUtf16(Node);
}

} // namespace

stDef_CameraTemplate stDef_CameraTemplate::s_F_o_Read(const CXmlObj& xmlSystem)
{
    stDef_CameraTemplate st;
    st.nResolution = xmlSystem.m_F_n_GetValueInt(Path(), u"Resolution"_s, 0);
    st.nFPS = xmlSystem.m_F_n_GetValueInt(Path(), u"FPS"_s, 0);
    st.nRateCtrl = xmlSystem.m_F_n_GetValueInt(Path(), u"RateCtrl"_s, 0);
    st.nQuality = xmlSystem.m_F_n_GetValueInt(Path(), u"Quality"_s, 0);
    xmlSystem.m_F_n_GetValue(Path(), u"Account"_s, st.sAccount, {});
    xmlSystem.m_F_n_GetValue(Path(), u"Password"_s, st.sPassword, {});
    return st;
}

void stDef_CameraTemplate::m_S_Write(CXmlObj& xmlSystem) const
{
    s_S_WriteResolution(xmlSystem, nResolution);
    s_S_WriteFps(xmlSystem, nFPS);
    xmlSystem.m_F_b_SetValue(Path(), u"RateCtrl"_s, nRateCtrl);
    xmlSystem.m_F_b_SetValue(Path(), u"Quality"_s, nQuality);
    xmlSystem.m_F_b_SetValue(Path(), u"Account"_s, sAccount);
    xmlSystem.m_F_b_SetValue(Path(), u"Password"_s, sPassword);
}

void stDef_CameraTemplate::s_S_WriteResolution(CXmlObj& xmlSystem, int nResolution)
{
    xmlSystem.m_F_b_SetValue(Path(), u"Resolution"_s, nResolution);
}

void stDef_CameraTemplate::s_S_WriteFps(CXmlObj& xmlSystem, int nFPS)
{
    xmlSystem.m_F_b_SetValue(Path(), u"FPS"_s, nFPS);
}
