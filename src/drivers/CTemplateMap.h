#pragma once

#include <QString>
#include <optional>

class CXmlObj;

/// One run of a template over one camera: reads the template, the detect reply and the abilities, writes the camera's
/// node. The drivers are made of its steps.
class CTemplateMap
{
public:
    struct stDef_Limits
    {
        int nMin = 0;
        int nMax = 0;
    };

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
    const CXmlObj& m_F_o_Support() const { return vm_xmlSupport; }

    int m_F_n_Rate() const { return vm_nRate; }               ///< wanted frames a second; 0 is the highest
    int m_F_n_Quality() const { return vm_nQuality; }         ///< wanted quality
    int m_F_n_RateControl() const { return vm_nRateControl; } ///< wanted way: index

    /// Whether an entry of the resolution list is not wider than the template wants; never with an unknown wish.
    bool m_F_b_Fits(int nEntry) const;
    int m_F_n_Entries() const;
    /// The first entry that fits.
    std::optional<int> m_F_o_Pick() const;
    static QString s_F_s_Entry(int nEntry); ///< its path

    /// Values of the abilities; numbers are 0 where they are missing.
    QString m_F_s_Ability(const QString& sPath, const QString& sKey) const;
    int m_F_n_Ability(const QString& sPath, const QString& sKey) const;
    stDef_Limits m_F_o_Limits(const QString& sPath, const QString& sMin, const QString& sMax) const;
    stDef_Limits m_F_o_RateLimits(const QString& sPath) const; ///< `MinFPS`, `MaxFPS`

    /// The wish within limits; a rate of 0 is the highest.
    static int s_F_n_ClampRate(int nWanted, stDef_Limits stLimits);
    static int s_F_n_ClampQuality(int nWanted, stDef_Limits stLimits);

    void m_S_Set(const QString& sKey, const QString& sValue);
    void m_S_Set(const QString& sKey, int nValue);
    /// Takes a key of an entry over under another name.
    void m_S_Take(int nEntry, const QString& sEntryKey, const QString& sKey);
    /// For cameras that number their profiles by the entries: profile and resolution.
    void m_S_TakeNumbered(int nEntry);
    /// The wanted rate within the limits of a node, quality and rate control as the template has them.
    void m_S_SetRate(const QString& sLimits, emDef_Streams nStreams);
    void m_S_SetQuality(stDef_Limits stLimits, emDef_Streams nStreams);
    void m_S_SetRateControl(emDef_Streams nStreams);

private:
    void m_S_SetStreams(const QString& sKey, int nValue, emDef_Streams nStreams);

    const CXmlObj& vm_xmlDetect;
    const CXmlObj& vm_xmlSupport;
    CXmlObj& vm_xmlCamera;
    QString vm_sNode;
    int vm_nResolution; ///< wanted width: index
    int vm_nRate;
    int vm_nQuality;
    int vm_nRateControl;
};
