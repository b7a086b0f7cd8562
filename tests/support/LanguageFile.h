#pragma once

#include <QFile>
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

/// Two languages have the same keys, with the same signs to fill in and as many mnemonics, and none that the program
/// never asks for: its keys stand in it, if only as the end of a longer text that the linker shares.
inline void CheckLanguageFiles(const char* pszFile, const char* pszOther, const QStringList& arPrograms)
{
    QByteArray sProgram;
    for (const QString& sFile : arPrograms) {
        QFile program(sFile);
        ASSERT_TRUE(program.open(QIODevice::ReadOnly));
        sProgram += program.readAll();
    }
    const QMap<QString, QString> mapTexts = ReadLanguageFile(pszFile), mapOther = ReadLanguageFile(pszOther);
    EXPECT_EQ(mapTexts.keys(), mapOther.keys());
    for (auto i = mapTexts.begin(); i != mapTexts.end(); ++i) {
        EXPECT_TRUE(sProgram.contains(i.key().toUtf8() + '\0')) << "nobody asks for " << i.key().toStdString();
        for (const char* const pszSign : {"%1", "%2", "%3", "&"})
            EXPECT_EQ(i.value().count(pszSign), mapOther[i.key()].count(pszSign)) << i.key().toStdString();
    }
}
