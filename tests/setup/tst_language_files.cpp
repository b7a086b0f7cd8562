#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include "host/Lib_Hostenv.h"

namespace {

/// Keys and defaults of all texts in the library's sources, as layout code and messages write them.
QMap<QString, QStringList> AskedFor()
{
    static const QRegularExpression s_objText(R"x(\bText(?: \w+)?\{"(\w+)",\s*"((?:[^"\\]|\\.)*)"\})x");
    QMap<QString, QStringList> mapTexts;
    for (QDirIterator files(SOURCE_FOLDER, {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
         files.hasNext();) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        for (auto i = s_objText.globalMatch(QString::fromUtf8(file.readAll())); i.hasNext();) {
            const auto match = i.next();
            if (match.captured(1) != "Key") // the example in a comment
                mapTexts[match.captured(1)].append(match.captured(2));
        }
    }
    return mapTexts;
}

QMap<QString, QString> Given(const char* pFile)
{
    CXmlObj xml;
    EXPECT_TRUE(xml.m_F_b_LoadXMLFile(QString(LANG_FOLDER "/") + pFile));
    QMap<QString, QString> mapTexts;
    CXmlNodeList list = xml.m_S_SelectNodesByKey("/root/Text");
    for (CXmlNode node = list.m_F_o_NextNode(); !node.m_F_b_IsNull(); node = list.m_F_o_NextNode()) {
        QString sKey, sValue;
        CXmlObj::s_S_GetNodeVal(node, "Key", sKey, {});
        CXmlObj::s_S_GetNodeVal(node, "Value", sValue, {});
        EXPECT_FALSE(mapTexts.contains(sKey)) << pFile << " has it twice: " << sKey.toStdString();
        EXPECT_FALSE(sValue.isEmpty()) << pFile << ": " << sKey.toStdString();
        mapTexts[sKey] = sValue;
    }
    return mapTexts;
}

TEST(LanguageFiles, HaveEachKeyThatIsAskedForAndNoOther)
{
    const auto mapAsked = AskedFor();
    ASSERT_GT(mapAsked.size(), 40);
    for (const char* pFile : {"lang_ENVR_eng.xml", "lang_ENVR_cht.xml"})
        EXPECT_EQ(Given(pFile).keys().join('\n').toStdString(), mapAsked.keys().join('\n').toStdString()) << pFile;
}

TEST(LanguageFiles, TheEnglishOneHasTheDefaults)
{
    const auto mapAsked = AskedFor();
    const auto mapGiven = Given("lang_ENVR_eng.xml");
    for (auto i = mapGiven.begin(); i != mapGiven.end(); ++i)
        EXPECT_TRUE(mapAsked[i.key()].contains(i.value())) << i.key().toStdString() << ": " << i.value().toStdString();
}

} // namespace
