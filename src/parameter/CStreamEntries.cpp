#include "parameter/CStreamEntries.h"

#include "drivers/CAbilities.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int NarrowWidth = 640; ///< pixels: what is not wider stands for the low stream

} // namespace

CStreamEntries::CStreamEntries(const stDef_ParameterBrand& stBrand, const CAbilities& objAbilities,
                               const CXmlObj& xmlCamera, const QString& sNode)
    : vm_stBrand(stBrand), vm_objAbilities(objAbilities), vm_xmlCamera(xmlCamera), vm_sNode(sNode)
{}

QStringList CStreamEntries::m_F_ar_Labels() const
{
    QStringList arLabels;
    for (int nEntry = 0; nEntry < vm_objAbilities.m_F_n_Entries(); ++nEntry)
        arLabels.append(m_F_s_Label(CAbilities::s_F_s_Entry(nEntry)));
    return arLabels;
}

QString CStreamEntries::m_F_s_Label(const QString& sEntry) const
{
    const QString sCodec = vm_stBrand.nLabel == emDef_EntryLabel::H264
                               ? u"H264"_s
                               : vm_objAbilities.m_F_s_Text(sEntry, u"Codec"_s).toUpper();
    const QString sResolution = vm_objAbilities.m_F_s_Text(sEntry, u"Resolution"_s);
    return sCodec + u" / "_s + (vm_stBrand.nLabel == emDef_EntryLabel::Upper ? sResolution.toUpper() : sResolution);
}

int CStreamEntries::m_F_n_Main() const
{
    int nFound = -1;
    for (int nEntry = 0; nEntry < vm_objAbilities.m_F_n_Entries(); ++nEntry) {
        if (m_F_b_Matches(CAbilities::s_F_s_Entry(nEntry)))
            nFound = nEntry;
    }
    return nFound;
}

bool CStreamEntries::m_F_b_Matches(const QString& sEntry) const
{
    const auto Same = [&](const QString& sKey, const char* pszNodeKey) {
        return vm_objAbilities.m_F_n_Number(sEntry, sKey) == m_F_n_Stored(pszNodeKey);
    };
    switch (vm_stBrand.nMatch) {
    case emDef_EntryMatch::Size:
        return Same(u"Width"_s, "VEncoderWidth_M") && Same(u"Height"_s, "VEncoderHeight_M");
    case emDef_EntryMatch::Profile:
        return Same(u"ProfileID"_s, "ProfileID");
    case emDef_EntryMatch::Resolution:
        break;
    }
    return vm_objAbilities.m_F_s_Text(sEntry, u"Resolution"_s) == vm_xmlCamera.m_F_s_Value(vm_sNode, u"Resolution"_s);
}

// -1 and a number that no entry has name a node that doesn't exist, whose limits are their defaults.
int CStreamEntries::m_F_n_Low() const
{
    const int nProfile = m_F_n_Stored("DefaultProfileID");
    switch (vm_stBrand.nLowEntry) {
    case emDef_LowEntry::None:
        break;
    case emDef_LowEntry::Narrow:
        return m_F_n_Narrow();
    case emDef_LowEntry::NarrowOrProfile:
        return m_F_n_Narrow() < 0 ? nProfile : m_F_n_Narrow();
    case emDef_LowEntry::Profile:
        return m_F_n_OfProfile(nProfile);
    }
    return -1;
}

/// The first one.
int CStreamEntries::m_F_n_Narrow() const
{
    for (int nEntry = 0; nEntry < vm_objAbilities.m_F_n_Entries(); ++nEntry) {
        if (vm_objAbilities.m_F_n_Number(CAbilities::s_F_s_Entry(nEntry), u"Width"_s) <= NarrowWidth)
            return nEntry;
    }
    return -1;
}

/// The last one.
int CStreamEntries::m_F_n_OfProfile(int nProfile) const
{
    int nFound = -1;
    for (int nEntry = 0; nEntry < vm_objAbilities.m_F_n_Entries(); ++nEntry) {
        if (vm_objAbilities.m_F_n_Number(CAbilities::s_F_s_Entry(nEntry), u"ProfileID"_s) == nProfile)
            nFound = nEntry;
    }
    return nFound;
}

int CStreamEntries::m_F_n_Stored(const char* pszKey) const
{
    return vm_xmlCamera.m_F_n_GetValueInt(vm_sNode, QString::fromLatin1(pszKey), 0);
}
