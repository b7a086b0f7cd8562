#include "drivers/CTemplateMap.h"

#include <algorithm>
#include <array>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Unlimited = -1;
constexpr int MostEntries = 1000; ///< as many as three digits can name; a count beyond is not believed
constexpr int AssumedWidth = 640; ///< of an entry that doesn't tell
// By the template's resolution: MAX, 5M, 3M, 2M, 1.3M, VGA.
constexpr std::array<int, 6> g_arWidths = {Unlimited, 2592, 2048, 1920, 1280, 720};

} // namespace

CTemplateMap::CTemplateMap(const CXmlObj& xmlSystem, const CXmlObj& xmlDetect, const CXmlObj& xmlSupport,
                           CXmlObj& xmlCamera, const QString& sNode)
    : vm_xmlDetect(xmlDetect), vm_xmlSupport(xmlSupport), vm_xmlCamera(xmlCamera), vm_sNode(sNode)
{
    const QString sTemplate = u"/root/system/camera/template"_s;
    vm_nResolution = xmlSystem.m_F_n_GetValueInt(sTemplate, u"Resolution"_s, 0);
    vm_nRate = xmlSystem.m_F_n_GetValueInt(sTemplate, u"FPS"_s, 30);
    vm_nQuality = xmlSystem.m_F_n_GetValueInt(sTemplate, u"Quality"_s, 0);
    vm_nRateControl = xmlSystem.m_F_n_GetValueInt(sTemplate, u"RateCtrl"_s, 0);
}

int CTemplateMap::m_F_n_Entries() const
{
    return std::clamp(m_F_n_Ability(u"/root/Support/Resolution"_s, u"Count"_s), 0, MostEntries);
}

bool CTemplateMap::m_F_b_Fits(int nEntry) const
{
    if (vm_nResolution < 0 || vm_nResolution >= static_cast<int>(g_arWidths.size()))
        return false;
    const int nWidest = g_arWidths[static_cast<std::size_t>(vm_nResolution)];
    const int nWidth = vm_xmlSupport.m_F_n_GetValueInt(s_F_s_Entry(nEntry), u"Width"_s, AssumedWidth);
    return nWidest == Unlimited || nWidth <= nWidest;
}

std::optional<int> CTemplateMap::m_F_o_Pick() const
{
    const int nEntries = m_F_n_Entries();
    for (int nEntry = 0; nEntry < nEntries; ++nEntry) {
        if (m_F_b_Fits(nEntry))
            return nEntry;
    }
    return std::nullopt;
}

QString CTemplateMap::s_F_s_Entry(int nEntry)
{
    return QString::asprintf("/root/Support/Resolution%03d", nEntry);
}

QString CTemplateMap::m_F_s_Ability(const QString& sPath, const QString& sKey) const
{
    QString sValue;
    vm_xmlSupport.m_F_n_GetValue(sPath, sKey, sValue, {});
    return sValue;
}

int CTemplateMap::m_F_n_Ability(const QString& sPath, const QString& sKey) const
{
    return vm_xmlSupport.m_F_n_GetValueInt(sPath, sKey, 0);
}

CTemplateMap::stDef_Limits CTemplateMap::m_F_o_Limits(const QString& sPath, const QString& sMin,
                                                      const QString& sMax) const
{
    return {m_F_n_Ability(sPath, sMin), m_F_n_Ability(sPath, sMax)};
}

CTemplateMap::stDef_Limits CTemplateMap::m_F_o_RateLimits(const QString& sPath) const
{
    return m_F_o_Limits(sPath, u"MinFPS"_s, u"MaxFPS"_s);
}

int CTemplateMap::s_F_n_ClampRate(int nWanted, stDef_Limits stLimits)
{
    return nWanted == 0 ? stLimits.nMax : s_F_n_ClampQuality(nWanted, stLimits);
}

// Not std::clamp: limits may stand the wrong way round, and the upper one is asked first.
int CTemplateMap::s_F_n_ClampQuality(int nWanted, stDef_Limits stLimits)
{
    if (nWanted > stLimits.nMax)
        return stLimits.nMax;
    return nWanted < stLimits.nMin ? stLimits.nMin : nWanted;
}

void CTemplateMap::m_S_Set(const QString& sKey, const QString& sValue)
{
    vm_xmlCamera.m_F_b_SetValue(vm_sNode, sKey, sValue);
}

void CTemplateMap::m_S_Set(const QString& sKey, int nValue)
{
    vm_xmlCamera.m_F_b_SetValue(vm_sNode, sKey, nValue);
}

void CTemplateMap::m_S_Take(int nEntry, const QString& sEntryKey, const QString& sKey)
{
    m_S_Set(sKey, m_F_s_Ability(s_F_s_Entry(nEntry), sEntryKey));
}

void CTemplateMap::m_S_TakeNumbered(int nEntry)
{
    m_S_Set(u"ProfileID"_s, nEntry);
    m_S_Take(nEntry, u"Resolution"_s, u"Resolution"_s);
}

void CTemplateMap::m_S_SetStreams(const QString& sKey, int nValue, emDef_Streams nStreams)
{
    if (nStreams != emDef_Streams::Low)
        m_S_Set(sKey, nValue);
    if (nStreams != emDef_Streams::Main)
        m_S_Set(u"Low"_s + sKey, nValue);
}

void CTemplateMap::m_S_SetRate(const QString& sLimits, emDef_Streams nStreams)
{
    m_S_SetStreams(u"FPS"_s, s_F_n_ClampRate(m_F_n_Rate(), m_F_o_RateLimits(sLimits)), nStreams);
}

void CTemplateMap::m_S_SetQuality(stDef_Limits stLimits, emDef_Streams nStreams)
{
    m_S_SetStreams(u"Compression"_s, s_F_n_ClampQuality(m_F_n_Quality(), stLimits), nStreams);
}

void CTemplateMap::m_S_SetRateControl(emDef_Streams nStreams)
{
    m_S_SetStreams(u"RateControl"_s, m_F_n_RateControl(), nStreams);
}
