#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include "support/LanguageFile.h"

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

TEST(LanguageFiles, HaveEachKeyThatIsAskedForAndNoOther)
{
    const auto mapAsked = AskedFor();
    ASSERT_GT(mapAsked.size(), 40);
    for (const char* pFile : {"lang_ENVR_eng.xml", "lang_ENVR_cht.xml"})
        EXPECT_EQ(ReadLanguageFile(pFile).keys().join('\n').toStdString(), mapAsked.keys().join('\n').toStdString())
            << pFile;
}

TEST(LanguageFiles, TheEnglishOneHasTheDefaults)
{
    const auto mapAsked = AskedFor();
    const auto mapGiven = ReadLanguageFile("lang_ENVR_eng.xml");
    for (auto i = mapGiven.begin(); i != mapGiven.end(); ++i)
        EXPECT_TRUE(mapAsked[i.key()].contains(i.value())) << i.key().toStdString() << ": " << i.value().toStdString();
}

} // namespace
