#include <QApplication>
#include <gtest/gtest.h>

#include "host/Lib_Hostenv.h"

using namespace Qt::StringLiterals;

namespace {

// Whatever a test opens, each text that is asked for stands in the open language file, and the English one there is the
// default's: some windows shorten it, as "MAC" for "MAC Address", and some write it in capitals. A file that a test has
// made names no language.
void CheckText(const CLangXMLObj& objFile, const QString& sKey, const QString& sDefault, const QString* pText)
{
    const QString sLanguage = objFile.m_F_s_Value(u"/root"_s, u"Language"_s, u"none"_s);
    if (sLanguage == u"none"_s)
        return;
    if (!pText) {
        ADD_FAILURE() << "a language file lacks " << sKey.toStdString();
        return;
    }
    const auto Bare = [](QString sText) { return sText.remove(u' '); }; // one key has a default with a blank less
    EXPECT_TRUE(sLanguage != u"English"_s || Bare(*pText).contains(Bare(sDefault), Qt::CaseInsensitive))
        << sKey.toStdString() << ": " << pText->toStdString() << " for " << sDefault.toStdString();
}

} // namespace

// The main function of tests that make widgets.
int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    CLangXMLObj::s_S_Watch(CheckText);
    return RUN_ALL_TESTS();
}
