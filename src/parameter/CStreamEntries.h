#pragma once

#include <QStringList>

#include "parameter/stDef_ParameterBrand.h"

class CAbilities;
class CXmlObj;

/// Which entries of a camera's resolution list stand for its two streams, by what its node has stored. All is borrowed
/// and read anew at each call.
class CStreamEntries
{
public:
    /// `sNode` is the path of the camera's node in the Camera document.
    CStreamEntries(const stDef_ParameterBrand& stBrand, const CAbilities& objAbilities, const CXmlObj& xmlCamera,
                   const QString& sNode);

    QStringList m_F_ar_Labels() const; ///< codec and resolution of every entry
    int m_F_n_Main() const;            ///< the last one that is the node's; -1 if none is
    int m_F_n_Low() const;             ///< -1 where none is found, or the brand has no such entry

private:
    QString m_F_s_Label(const QString& sEntry) const;
    bool m_F_b_Matches(const QString& sEntry) const;
    int m_F_n_Narrow() const;
    int m_F_n_OfProfile(int nProfile) const;
    int m_F_n_Stored(const char* pszKey) const;

    const stDef_ParameterBrand& vm_stBrand;
    const CAbilities& vm_objAbilities;
    const CXmlObj& vm_xmlCamera;
    QString vm_sNode;
};
