#include "core/CWndNvrPC.h"

#include "core/backup/CRecordBackupPC.h"

using namespace Qt::StringLiterals;

void CWndNvrPC::m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream)
{
    m_S_StartRtsp(m_F_o_ReadTarget(nNvrID), nNvrID, nChannel, nStream);
}

QString CWndNvrPC::m_F_s_CacheName() const
{
    return u"PC"_s;
}

std::array<CWndNvrShared::stDef_CommandRow, 3> CWndNvrPC::m_F_ar_Commands() const
{
    return {{
        {Text{"SystemSetting168", "System Setting"}, false},
        {Text{"SystemManagement169", "System Management"}, false},
        {Text{"EventSetting170", "Event Setting"}, false},
    }};
}

bool CWndNvrPC::m_F_n_CameraSynchronization(CXmlObj* pSystemInfo, CXmlObj*, CXmlObj* pCamera, int nTimeoutMs)
{
    return m_F_b_GetRequests({{"cgi-bin/SystemStatus.cgi", pSystemInfo}, {"cgi-bin/CMS.cgi?action=CamXml", pCamera}},
                             nTimeoutMs);
}

void CWndNvrPC::m_S_ReadPtzNames(const CXmlObj& xmlReply, int nCamera, const QString& sGroup, QStringList& arNames)
{
    CXmlNodeList objList = xmlReply.m_S_SelectNodesByKey(u"/root/Camera_%1/%2/Name"_s.arg(nCamera).arg(sGroup));
    for (CXmlNode objNode = objList.m_F_o_NextNode(); !objNode.m_F_b_IsNull(); objNode = objList.m_F_o_NextNode())
        arNames.append(CXmlObj::s_F_s_GetNodeText(objNode));
}

int CWndNvrPC::m_F_n_RecordBackup(stDef_RecordBackupInfo stInfo)
{
    return CRecordBackupPC(std::move(stInfo)).m_F_n_Run();
}
