#include "drivers/CAbilities.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MostEntries = 1000; ///< a count beyond is not believed
constexpr int AssumedWidth = 640;

} // namespace

int CAbilities::m_F_n_Entries() const
{
    return std::clamp(m_F_n_Number(u"/root/Support/Resolution"_s, u"Count"_s), 0, MostEntries);
}

QString CAbilities::s_F_s_Entry(int nEntry)
{
    return QString::asprintf("/root/Support/Resolution%03d", nEntry);
}

int CAbilities::m_F_n_Width(int nEntry) const
{
    return m_F_n_Number(s_F_s_Entry(nEntry), u"Width"_s, AssumedWidth);
}

QString CAbilities::m_F_s_Text(const QString& sPath, const QString& sKey) const
{
    return vm_xmlSupport.m_F_s_Value(sPath, sKey);
}

int CAbilities::m_F_n_Number(const QString& sPath, const QString& sKey, int nDefault) const
{
    return vm_xmlSupport.m_F_n_GetValueInt(sPath, sKey, nDefault);
}

CAbilities::stDef_Limits CAbilities::m_F_o_Limits(const QString& sPath, const QString& sMin, const QString& sMax) const
{
    return {m_F_n_Number(sPath, sMin), m_F_n_Number(sPath, sMax)};
}

CAbilities::stDef_Limits CAbilities::m_F_o_RateLimits(const QString& sPath) const
{
    return m_F_o_Limits(sPath, u"MinFPS"_s, u"MaxFPS"_s);
}

// Not std::clamp: limits may stand the wrong way round, and the upper one is asked first.
int CAbilities::s_F_n_Clamp(int nWanted, stDef_Limits stLimits)
{
    if (nWanted > stLimits.nMax)
        return stLimits.nMax;
    return nWanted < stLimits.nMin ? stLimits.nMin : nWanted;
}

int CAbilities::s_F_n_ClampRate(int nWanted, stDef_Limits stLimits)
{
    return nWanted == 0 ? stLimits.nMax : s_F_n_Clamp(nWanted, stLimits);
}
