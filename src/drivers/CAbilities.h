#pragma once

#include <QString>

class CXmlObj;

/// What a camera can do, as the recorder tells it in `/root/Support`. Numbers are 0 where they are missing.
class CAbilities
{
public:
    struct stDef_Limits
    {
        int nMin = 0;
        int nMax = 0;
    };

    /// The reply is borrowed.
    explicit CAbilities(const CXmlObj& xmlSupport) : vm_xmlSupport(xmlSupport) {}

    /// Entries of the resolution list; no more than three digits can name.
    int m_F_n_Entries() const;
    static QString s_F_s_Entry(int nEntry); ///< path of an entry
    /// Width of an entry in pixels; 640 where it doesn't tell.
    int m_F_n_Width(int nEntry) const;

    QString m_F_s_Text(const QString& sPath, const QString& sKey) const;
    int m_F_n_Number(const QString& sPath, const QString& sKey, int nDefault = 0) const;
    stDef_Limits m_F_o_Limits(const QString& sPath, const QString& sMin, const QString& sMax) const;
    stDef_Limits m_F_o_RateLimits(const QString& sPath) const; ///< `MinFPS`, `MaxFPS`

    /// A wish within limits.
    static int s_F_n_Clamp(int nWanted, stDef_Limits stLimits);
    /// The same for a rate, of which 0 is the highest.
    static int s_F_n_ClampRate(int nWanted, stDef_Limits stLimits);

private:
    const CXmlObj& vm_xmlSupport;
};
