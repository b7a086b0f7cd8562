#include "setup/user/CUserAccounts.h"

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int CountIfMissing = 1; // every recorder has its administrator
constexpr std::array g_apszKeys = {"PreviewCam", "PlaybackCam", "Capability"};

constexpr std::size_t IndexOf(emDef_Rights nRights)
{
    return static_cast<std::size_t>(nRights);
}

// A position that the string doesn't have is not made: its length is the recorder's matter.
QString Marked(QString sRights, const CUserAccounts::Marks& mapMarks)
{
    for (auto it = mapMarks.cbegin(); it != mapMarks.cend(); ++it) {
        if (it.key() < sRights.size())
            sRights[it.key()] = it.value() ? u'1' : u'0';
    }
    return sRights;
}

} // namespace

CUserAccounts::CUserAccounts(CXmlObj* pSystem)
    : vm_pSystem(pSystem), vm_objNodes(pSystem, u"/root/account"_s, u"USER"_s, "count", CountIfMissing)
{}

bool CUserAccounts::m_F_b_IsOpen() const
{
    return vm_pSystem->m_F_b_IsOpen();
}

QString CUserAccounts::m_F_s_Value(int nAccount, const char* pszKey) const
{
    return vm_pSystem->m_F_s_Value(m_F_s_Path(nAccount), QString::fromLatin1(pszKey));
}

QString CUserAccounts::m_F_s_Rights(int nAccount, emDef_Rights nRights) const
{
    return m_F_s_Value(nAccount, g_apszKeys[IndexOf(nRights)]);
}

void CUserAccounts::m_S_Append(const Rights& arMarks)
{
    const int nAccount = m_F_n_Count();
    m_S_WriteRights(nAccount, nAccount - 1, arMarks);
    vm_objNodes.m_S_SetCount(nAccount + 1);
}

void CUserAccounts::m_S_WriteRights(int nAccount, int nModel, const Rights& arMarks)
{
    for (const emDef_Rights nRights : AllRights) {
        const std::size_t n = IndexOf(nRights);
        vm_pSystem->m_F_b_SetValue(m_F_s_Path(nAccount), QString::fromLatin1(g_apszKeys[n]),
                                   Marked(m_F_s_Rights(nModel, nRights), arMarks[n]));
    }
}
