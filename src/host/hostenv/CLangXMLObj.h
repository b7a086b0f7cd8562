#pragma once

#include "host/Export.h"
#include "host/bedrock/CXmlObj.h"

/// One language file: `<root><Text Key="..." Value="..."/>...</root>`, UTF-8.
class LIB_HOSTENV_EXPORT CLangXMLObj : public CXmlObj
{
public:
    /// `sOut` receives the file's text for the key, or the default if the file has none. Returns 1 if found, else 0.
    int m_F_n_GetLangStr(const QString& sKey, QString& sOut, const QString& sDefault) const;
};
