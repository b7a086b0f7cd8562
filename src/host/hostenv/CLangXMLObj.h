#pragma once

#include <QHash>

#include "host/Export.h"
#include "host/bedrock/CXmlObj.h"

/// One language file: `<root><Text Key="..." Value="..."/>...</root>`, UTF-8. Its texts are those of the last load by
/// `m_F_b_LoadXMLFile`; the first text of a key counts.
class LIB_HOSTENV_EXPORT CLangXMLObj : public CXmlObj
{
public:
    bool m_F_b_LoadXMLFile(const QString& sPath);
    /// `sOut` receives the file's text for the key, or the default if the file has none. Returns 1 if found, else 0.
    int m_F_n_GetLangStr(const QString& sKey, QString& sOut, const QString& sDefault) const;

private:
    QHash<QString, QString> vm_mapTexts;
};
