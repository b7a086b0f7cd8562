#include "core/CWndNvrEmbedded.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "core/CommandNumbers.h"
#include "core/DocumentTable.h"
#include "core/ProductStrings.h"
#include "core/backup/CRecordBackupEmbedded.h"

using namespace Qt::StringLiterals;

namespace {

QString LanguageFile(int nLanguage)
{
    const bool bKnown = nLanguage >= 0 && nLanguage < static_cast<int>(std::size(nsProduct::g_arLanguageFiles));
    return bKnown ? QString::fromUtf16(nsProduct::g_arLanguageFiles[nLanguage]) : QString();
}

/// `DstType` of a recorder whose stream address comes from the DIPS service. A host that fills `stDef_NvrInit` from the
/// same list sets `bDips` at 1: the two really differ.
constexpr int DstTypeDipsStream = 2;

/// Beyond what three digits can name, a count is not believed.
constexpr int MostPtzNames = 1000;

} // namespace

int CWndNvrEmbedded::m_F_n_Init(stDef_NvrInit stInit)
{
    if (vm_pEnv) {
        vm_pEnv->m_F_p_GetShmSystem(true);
        m_F_b_InitLanguageXml(vm_pEnv->m_F_s_GetLangFolder() + LanguageFile(vm_pEnv->vm_nLanguage));
    }
    return CWndNvrShared::m_F_n_Init(std::move(stInit));
}

void CWndNvrEmbedded::m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream)
{
    stDef_StreamTarget stTarget = m_F_o_ReadTarget(nNvrID);
    const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
    CXmlObj& xmlList = *vm_pEnv->m_F_p_GetMemSysXML();
    if (xmlList.m_F_n_GetValueInt(sNode, u"DstType"_s, 0) == DstTypeDipsStream) {
        const QString sDips = xmlList.m_F_s_Value(sNode, u"DIPS"_s);
        QByteArray sAddress;
        // A failed look-up leaves the listed address and port in force.
        if (m_F_b_DipsToIpPort(CSFunc::s_F_s_UnicodeToAnsi(sDips), sAddress, stTarget.nHttpPort))
            stTarget.sIP = CSFunc::s_F_s_AnsiToUnicode(sAddress);
    }
    m_S_StartRtsp(stTarget, nNvrID, nChannel, nStream);
}

QString CWndNvrEmbedded::m_F_s_CacheName() const
{
    return u"Embedded"_s;
}

std::array<CWndNvrShared::stDef_CommandRow, 3> CWndNvrEmbedded::m_F_ar_Commands() const
{
    return {{
        {Text{"SystemSetting", "System Setting"}, true},
        {Text{"SystemManagement", "System Management"}, false},
        {Text{"EventSetting", "Event Setting"}, false},
    }};
}

void CWndNvrEmbedded::m_S_OnCommand(int nId)
{
    switch (nId) {
    case nsCMS::MenuCommand_SystemSetting:
        return OnMenuSystemSetting();
    case nsCMS::MenuCommand_SystemManagement:
        return OnMenuSystemManagement();
    case nsCMS::MenuCommand_EventSetting:
        return OnMenuEventSetting();
    case nsCMS::MenuCommand_LogViewer:
        return OnMenuLogViewer();
    default:
        return;
    }
}

bool CWndNvrEmbedded::m_F_n_CameraSynchronization(CXmlObj* pSystemInfo, CXmlObj* pLoginInfo, CXmlObj* pCamera,
                                                  int nTimeoutMs)
{
    // The second one without "cgi-bin/" in front, unlike everywhere else.
    return m_F_b_GetRequests({{nsDocuments::SystemInfo.pszFetch, pSystemInfo},
                              {"logininfo.cgi", pLoginInfo},
                              {nsDocuments::Camera.pszFetch, pCamera}},
                             nTimeoutMs);
}

void CWndNvrEmbedded::m_S_ReadPtzNames(const CXmlObj& xmlReply, int nCamera, const QString& sGroup,
                                       QStringList& arNames)
{
    const QString sPath = QString::asprintf("/root/Cam%03d/", nCamera) + sGroup;
    const int nCount = std::min(xmlReply.m_F_n_GetValueInt(sPath, u"count"_s, 0), MostPtzNames);
    for (int i = 0; i < nCount; ++i)
        arNames.append(xmlReply.m_F_s_Value(sPath, QString::asprintf("Name%03d", i)));
}

int CWndNvrEmbedded::m_F_n_RecordBackup(stDef_RecordBackupInfo stInfo)
{
    return CRecordBackupEmbedded(std::move(stInfo)).m_F_n_Run();
}
