#pragma once

#include <QString>
#include <optional>

#include "drivers/CAbilities.h"
#include "drivers/stDef_CameraTemplate.h"

class CXmlObj;

/// One run of a template over one camera: reads the template, the detect reply and the abilities, writes the camera's
/// node. The drivers are made of its steps.
class CTemplateMap
{
public:
    /// Whose settings are written.
    enum class emDef_Streams
    {
        Main,
        Low,
        Both
    };

    /// All are borrowed; the System document holds the template.
    CTemplateMap(const CXmlObj& xmlSystem, const CXmlObj& xmlDetect, const CXmlObj& xmlSupport, CXmlObj& xmlCamera,
                 const QString& sNode);

    const CXmlObj& m_F_o_Detect() const { return vm_xmlDetect; }
    const CAbilities& m_F_o_Abilities() const { return vm_objAbilities; }
    const stDef_CameraTemplate& m_F_o_Wanted() const { return vm_stWanted; }

    /// Whether an entry of the resolution list is not wider than the template wants; never with an unknown wish.
    bool m_F_b_Fits(int nEntry) const;
    /// The first entry that fits.
    std::optional<int> m_F_o_Pick() const;

    void m_S_Set(const QString& sKey, const QString& sValue);
    void m_S_Set(const QString& sKey, int nValue);
    /// Takes a key of an entry over under another name.
    void m_S_Take(int nEntry, const QString& sEntryKey, const QString& sKey);
    /// For cameras that number their profiles by the entries: profile and resolution.
    void m_S_TakeNumbered(int nEntry);
    /// The wanted rate within the limits of a node, quality and rate control as the template has them.
    void m_S_SetRate(const QString& sLimits, emDef_Streams nStreams);
    void m_S_SetQuality(CAbilities::stDef_Limits stLimits, emDef_Streams nStreams);
    void m_S_SetRateControl(emDef_Streams nStreams);

private:
    void m_S_SetStreams(const QString& sKey, int nValue, emDef_Streams nStreams);

    const CXmlObj& vm_xmlDetect;
    CAbilities vm_objAbilities;
    CXmlObj& vm_xmlCamera;
    QString vm_sNode;
    stDef_CameraTemplate vm_stWanted;
};
