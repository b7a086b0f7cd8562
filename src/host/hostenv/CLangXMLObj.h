#pragma once

#include <QHash>

#include "host/Export.h"
#include "host/bedrock/CXmlObj.h"

/// One language file: `<root><Text Key="..." Value="..."/>...</root>`, UTF-8. The texts are taken at each load, so
/// that a look-up costs the same in a file of any length; the first text of a key counts.
class LIB_HOSTENV_EXPORT CLangXMLObj : public CXmlObj
{
public:
    bool m_F_b_LoadXML(const QString& sXml);
    bool m_F_b_LoadXMLFile(const QString& sPath);
    /// `sOut` receives the file's text for the key, or the default if the file has none. Returns 1 if found, else 0.
    int m_F_n_GetLangStr(const QString& sKey, QString& sOut, const QString& sDefault) const;

    /// Told of each look-up in an open file: the file, the key, the default, and the file's text; null if it has none.
    using Asked = void (*)(const CLangXMLObj& objFile, const QString& sKey, const QString& sDefault,
                           const QString* pText);
    /// For tests, which see by it what a language file lacks; null for nobody. Set it before the first look-up.
    static void s_S_Watch(Asked fnAsked);

private:
    bool m_F_b_TakeTexts(bool bLoaded);

    QHash<QString, QString> vm_mapTexts;
};
