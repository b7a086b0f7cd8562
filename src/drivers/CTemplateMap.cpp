#include "drivers/CTemplateMap.h"

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

CTemplateMap::CTemplateMap(const CXmlObj& xmlSystem, const CXmlObj& xmlDetect, const CXmlObj& xmlSupport,
                           CXmlObj& xmlCamera, const QString& sNode)
    : vm_xmlDetect(xmlDetect),
      vm_objAbilities(xmlSupport),
      vm_xmlCamera(xmlCamera),
      vm_sNode(sNode),
      vm_stWanted(stDef_CameraTemplate::s_F_o_ReadForCamera(xmlSystem))
{}

bool CTemplateMap::m_F_b_Fits(int nEntry) const
{
    const auto pWanted = stDef_CameraTemplate::s_F_p_Resolution(vm_stWanted.nResolution);
    return pWanted && (pWanted->nWidest == stDef_TemplateResolution::Unlimited ||
                       vm_objAbilities.m_F_n_Width(nEntry) <= pWanted->nWidest);
}

std::optional<int> CTemplateMap::m_F_o_Pick() const
{
    const int nEntries = vm_objAbilities.m_F_n_Entries();
    for (int nEntry = 0; nEntry < nEntries; ++nEntry) {
        if (m_F_b_Fits(nEntry))
            return nEntry;
    }
    return std::nullopt;
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
    m_S_Set(sKey, vm_objAbilities.m_F_s_Text(CAbilities::s_F_s_Entry(nEntry), sEntryKey));
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
    const int nRate = CAbilities::s_F_n_ClampRate(vm_stWanted.nFPS, vm_objAbilities.m_F_o_RateLimits(sLimits));
    m_S_SetStreams(u"FPS"_s, nRate, nStreams);
}

void CTemplateMap::m_S_SetQuality(CAbilities::stDef_Limits stLimits, emDef_Streams nStreams)
{
    m_S_SetStreams(u"Compression"_s, CAbilities::s_F_n_Clamp(vm_stWanted.nQuality, stLimits), nStreams);
}

void CTemplateMap::m_S_SetRateControl(emDef_Streams nStreams)
{
    m_S_SetStreams(u"RateControl"_s, vm_stWanted.nRateCtrl, nStreams);
}
