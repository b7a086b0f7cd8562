#include "setup/camera/stDef_SearchIPC.h"

#include "drivers/stDef_CameraTemplate.h"
#include "host/Lib_Bedrock.h"
#include "setup/camera/stDef_CameraValues.h"

using namespace Qt::StringLiterals;

namespace {

using Row = stDef_SearchIPC;

constexpr stDef_Member<Row> g_astRows[] = {
    {"Vendor", &Row::Vendor},
    {"DeviceModel", &Row::DeviceModel},
    {"DeviceName", &Row::DeviceName},
    {"IpType", &Row::IpType},
    {"IP", &Row::IP},
    {"BonjouIP", &Row::BonjouIP},
    {"HttpPort", &Row::HttpPort, "", 80},
    {"RtspPort", &Row::RtspPort, "", 554},
    {"OnvifAuth", &Row::OnvifAuth, "", 1},
    {"MAC", &Row::MAC},
};

} // namespace

void stDef_SearchIPC::m_S_Read(const CXmlNode& objNode)
{
    nsMembers::Read<Row>(objNode, g_astRows, *this);
}

stDef_CameraValues stDef_SearchIPC::m_F_o_Camera(const stDef_CameraTemplate& stTemplate) const
{
    stDef_CameraValues st;
    st.nVendorID = Vendor;
    st.sModel = DeviceName;
    st.sIP = m_F_s_Address();
    st.sName = DeviceName + u' ' + st.sIP;
    st.sHttpPort = QString::number(HttpPort);
    st.sRtspPort = QString::number(RtspPort);
    st.nOnvifAuth = OnvifAuth;
    st.sUser = stTemplate.sAccount;
    st.sPassword = stTemplate.sPassword;
    return st;
}

QString stDef_SearchIPC::m_F_s_Address() const
{
    return m_F_b_LinkLocal() ? QString(BonjouIP).replace(u"169.254."_s, u"ID@"_s) : IP;
}
