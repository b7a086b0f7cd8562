#include "core/CWndNvrEmbedded.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Language files by the host's language index; the others have none.
constexpr std::array<const char16_t*, 8> g_apszLanguageFiles = {
    u"lang_ENVR_cht.xml", u"lang_ENVR_eng.xml", u"", u"", u"", u"", u"", u""};

QString LanguageFile(int nLanguage)
{
    const bool bKnown = nLanguage >= 0 && nLanguage < static_cast<int>(g_apszLanguageFiles.size());
    return bKnown ? QString::fromUtf16(g_apszLanguageFiles[static_cast<std::size_t>(nLanguage)]) : QString();
}

/// `DstType` of a recorder whose stream address comes from the DIPS service. A host that fills `stDef_NvrInit` from the
/// same list sets `bDips` at 1: the two really differ.
constexpr int DstTypeDipsStream = 2;

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
        QString sDips;
        xmlList.m_F_n_GetValue(sNode, u"DIPS"_s, sDips, {});
        QByteArray sAddress;
        // A failed look-up leaves the listed address and port in force.
        if (m_F_b_DipsToIpPort(CSFunc::s_F_s_UnicodeToAnsi(sDips), sAddress, stTarget.nHttpPort))
            stTarget.sIP = CSFunc::s_F_s_AnsiToUnicode(sAddress);
    }
    m_S_StartRtsp(stTarget, nNvrID, nChannel, nStream);
}
