#include "setup/user/CUserRights.h"

#include "host/Lib_Bedrock.h"

namespace {

QString KeyOf(emDef_Rights nRights)
{
    constexpr const char* Keys[] = {"PreviewCam", "PlaybackCam", "Capability"};
    return QString::fromLatin1(Keys[static_cast<std::size_t>(nRights)]);
}

QString PathOf(int nAccount)
{
    return QString::asprintf("/root/account/USER%03d", nAccount);
}

} // namespace

QString CUserRights::m_F_s_Of(int nAccount, emDef_Rights nRights) const
{
    return vm_pSystem->m_F_s_Value(PathOf(nAccount), KeyOf(nRights));
}

void CUserRights::m_S_Write(int nAccount, int nModel, emDef_Rights nRights, const QMap<int, bool>& mapMarks)
{
    QString sRights = m_F_s_Of(nModel, nRights);
    for (auto it = mapMarks.cbegin(); it != mapMarks.cend(); ++it) {
        if (it.key() < sRights.size())
            sRights[it.key()] = it.value() ? u'1' : u'0';
    }
    vm_pSystem->m_F_b_SetValue(PathOf(nAccount), KeyOf(nRights), sRights);
}
