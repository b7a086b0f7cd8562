#include "setup/camera/CCameraProbe.h"

#include "core/CPageRequests.h"
#include "drivers/CCamObj_Base.h"
#include "host/Lib_Bedrock.h"
#include "setup/camera/stDef_CameraValues.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int TimeoutMs = 60000;

QString Url(const QString& sAction, const stDef_CameraValues& st)
{
    return CCamObj_Base::s_F_s_Url(sAction, st.sIP, CXmlObj::s_F_n_ToInt(st.sHttpPort), st.sUser, st.sPassword,
                                   st.nVendorID, st.nOnvifAuth);
}

} // namespace

bool stDef_CameraReplies::s_F_b_Recognized(const CXmlObj& xmlDetect)
{
    return xmlDetect.m_F_s_Value(u"/root/Camera/Cam000"_s, u"Model"_s, u"Any"_s) != "Any"_L1;
}

bool CCameraProbe::m_F_b_Detect(const stDef_CameraValues& stCamera, CXmlObj& xmlReply) const
{
    return vm_objRequests.m_F_b_Get(Url(u"detect&camid=0"_s, stCamera), &xmlReply, TimeoutMs);
}

bool CCameraProbe::m_F_b_DetectAndSupport(const stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies) const
{
    const bool bDetect = m_F_b_Detect(stCamera, stReplies.xmlDetect);
    const bool bSupport = vm_objRequests.m_F_b_Get(Url(u"camerasupport"_s, stCamera), &stReplies.xmlSupport, TimeoutMs);
    return (bDetect || bSupport) && !vm_objRequests.m_F_b_Stopped();
}

bool CCameraProbe::m_F_b_Search(CXmlObj& xmlReply) const
{
    vm_objRequests.m_F_b_Get(u"cgi-bin/SearchIPC.cgi"_s, &xmlReply, TimeoutMs);
    return xmlReply.m_F_b_IsOpen(); // rows are there whenever a document is, whatever the request says
}
