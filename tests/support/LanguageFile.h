#pragma once

#include <QMap>
#include <gtest/gtest.h>

#include "host/Lib_Hostenv.h"

/// Keys and words of a language file, which has each key once and a word for it.
inline QMap<QString, QString> ReadLanguageFile(const char* pszFile)
{
    CXmlObj xml;
    EXPECT_TRUE(xml.m_F_b_LoadXMLFile(QString(LANG_FOLDER "/") + pszFile));
    QMap<QString, QString> mapTexts;
    CXmlNodeList list = xml.m_S_SelectNodesByKey("/root/Text");
    for (CXmlNode node = list.m_F_o_NextNode(); !node.m_F_b_IsNull(); node = list.m_F_o_NextNode()) {
        QString sKey, sValue;
        CXmlObj::s_S_GetNodeVal(node, "Key", sKey, {});
        CXmlObj::s_S_GetNodeVal(node, "Value", sValue, {});
        EXPECT_FALSE(mapTexts.contains(sKey)) << pszFile << " has it twice: " << sKey.toStdString();
        EXPECT_FALSE(sValue.isEmpty()) << pszFile << ": " << sKey.toStdString();
        mapTexts[sKey] = sValue;
    }
    return mapTexts;
}
