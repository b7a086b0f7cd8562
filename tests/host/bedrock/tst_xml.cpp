#include <QDir>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "host/bedrock/CXmlObj.h"
#include "support/Files.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sFixtures = QStringLiteral(FIXTURE_FOLDER "/");

std::string Value(const CXmlObj& objXml, const QString& sPath, const QString& sKey)
{
    QString sOut;
    objXml.m_F_n_GetValue(sPath, sKey, sOut, u"default"_s);
    return sOut.toStdString();
}

std::string Text(const CXmlObj& objXml, const QString& sPath)
{
    QString sOut;
    objXml.m_F_n_GetText(sPath, sOut, u"default"_s);
    return sOut.toStdString();
}

TEST(Xml, ReadsWhatTheRecorderWrote)
{
    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXMLFile(g_sFixtures + u"Camera.xml"_s));
    for (const stDef_TableRow& row : ReadTable("values.txt", 4)) {
        SCOPED_TRACE(row.sWhere);
        const QString sPath = QString::fromStdString(row[0]), sKey = QString::fromStdString(row[1]);
        EXPECT_EQ(Value(objXml, sPath, sKey), row[2]);
        EXPECT_EQ(objXml.m_F_n_GetValueInt(sPath, sKey, 77), row.Number(3));
    }
    EXPECT_EQ(Text(objXml, u"Msg"_s), "MAC=00-13-E2 & more <raw> & \"quoted\" ");
    EXPECT_EQ(Text(objXml, u"/root/Camera/Cam002/FutureThing"_s), "kept as it is");
    EXPECT_EQ(Text(objXml, u"Blank"_s), "");
    EXPECT_EQ(Text(objXml, u"None"_s), "default");
}

TEST(Xml, WalksAllNodesOfAPath)
{
    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(
        u"<r><a n='1'/><b><c n='2'/></b><a><c n='3'/></a><b/><b><c n='4'/><d/><c><e n='5'/></c><c><e n='6'/></c></b></r>"_s));
    const auto fnNumbers = [&](const QString& sPath) {
        std::vector<int> arNumbers;
        CXmlNodeList objList = objXml.m_S_SelectNodesByKey(sPath);
        for (CXmlNode objNode = objList.m_F_o_NextNode(); !objNode.m_F_b_IsNull(); objNode = objList.m_F_o_NextNode())
            arNumbers.push_back(CXmlObj::s_F_n_GetNodeValInt(objNode, u"n"_s, -1));
        EXPECT_TRUE(objList.m_F_o_NextNode().m_F_b_IsNull());
        return arNumbers;
    };
    EXPECT_EQ(fnNumbers(u"/r/b/c"_s), (std::vector<int>{2, 4, -1, -1}));
    EXPECT_EQ(fnNumbers(u"/r/b/c/e"_s), (std::vector<int>{5, 6}));
    EXPECT_EQ(fnNumbers(u"a"_s), (std::vector<int>{1, -1}));
    EXPECT_EQ(fnNumbers(u""_s), (std::vector<int>{-1}));
    EXPECT_EQ(fnNumbers(u"/x/b/c"_s), (std::vector<int>{}));
    EXPECT_EQ(fnNumbers(u"b/none"_s), (std::vector<int>{}));

    CXmlNodeList objList = objXml.m_S_SelectNodesByKey(u"b/c"_s);
    QString sOut;
    CXmlObj::s_S_GetNodeVal(objList.m_F_o_NextNode(), u"n"_s, sOut, u"-"_s);
    EXPECT_EQ(sOut, u"2"_s);
    CXmlObj::s_S_GetNodeVal(CXmlNode(), u"n"_s, sOut, u"-"_s);
    EXPECT_EQ(sOut, u"-"_s);
    objList.m_S_Reset();
    EXPECT_EQ(objList.m_F_o_NextNode().m_F_s_Name(), u"c"_s);
}

TEST(Xml, DocumentsGoBackAsTheyCame)
{
    for (const stDef_TableRow& row : ReadTable("kept.txt", 11)) {
        SCOPED_TRACE(row[0]);
        const QString sList = QString::fromStdString(row[1]);
        const QString sText = QString::fromUtf8(ReadFile(g_sFixtures + QString::fromStdString(row[0])));
        CXmlObj objXml;
        ASSERT_TRUE(objXml.m_F_b_LoadXML(QChar(QChar::ByteOrderMark) + sText));
        EXPECT_EQ(objXml.m_F_s_GetXML(), sText);
        const qint32 nCount = objXml.m_F_n_GetValueInt(sList, u"count"_s, -1);
        EXPECT_TRUE(objXml.m_F_b_SetValue(sList, u"count"_s, nCount));
        EXPECT_EQ(objXml.m_F_s_GetXML(), sText) << "to store what was there already is no change";

        ASSERT_TRUE(objXml.m_F_b_SetValue(u""_s, u"Touched"_s, 1));
        const std::string sChanged = objXml.m_F_s_GetXML().toStdString();
        for (std::size_t n = 2; n < row.arFields.size(); ++n)
            EXPECT_NE(sChanged.find(row[n]), sChanged.npos) << row[n] << "\n" << sChanged;
    }
}

bool Edit(CXmlObj& objXml, const QString& sEdit, const QString& sPath, const QString& sName, const QString& sValue)
{
    return sEdit == u"set"      ? objXml.m_F_b_SetValue(sPath, sName, sValue)
           : sEdit == u"add"    ? objXml.m_F_b_AddNods(sPath, sName)
           : sEdit == u"remove" ? objXml.m_F_b_RemoveNods(sPath, sName)
           : sEdit == u"put"    ? objXml.m_F_b_SetNods(sPath, sName, sValue)
                                : objXml.m_F_b_RenameNods(sPath, sName, sValue);
}

TEST(Xml, EditsKeepTheLayoutOrHaveNoEffect)
{
    for (const stDef_TableRow& row : ReadTable("edits.txt", 6)) {
        SCOPED_TRACE(row.sWhere);
        CXmlObj objXml;
        QStringList arFields;
        for (const std::string& sField : row.arFields)
            arFields << QString::fromStdString(sField);
        ASSERT_TRUE(objXml.m_F_b_LoadXML(arFields[0]));
        EXPECT_EQ(Edit(objXml, arFields[1], arFields[2], arFields[3], arFields[4]), !row[5].empty());
        EXPECT_EQ(objXml.m_F_s_GetXML().toStdString(), row[5].empty() ? row[0] : row[5]);
    }
    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<root/>"_s));
    EXPECT_TRUE(objXml.m_F_b_SetValue(u""_s, u"a"_s, u"\x1\xD800!"_s));
    EXPECT_EQ(objXml.m_F_s_GetXML(), u"<root a=\"\uFFFD\uFFFD!\"/>"_s);
}

TEST(Xml, ACopyIsAReadAndAWriteOfEachKey)
{
    const QString sName = u"a <name> & \"more\""_s;
    const CXmlObj::st_CopyKey arKeys[] = {{"Plain"},   {"Amp"},         {"Line"},
                                          {"Missing"}, {"Port", "554"}, {"Name", "", &sName},
                                          {"Wide"},    {"Twice"},       {"Less", "<"}};
    const QString sFrom =
        u"<root><A Twice='x' Wide='倉庫' Line='a\tb&#10;c' Amp='&amp;&lt;&#x41;' Plain='p' Quote='\"' Twice='second'/></root>"_s;
    for (const char* pszTo : {"<root/>", "<root><B Plain='old' Own='1' Twice='x'/></root>"}) {
        for (const bool bOpen : {true, false}) {
            CXmlObj xmlFrom, xmlTo, xmlByHand;
            EXPECT_EQ(bOpen && xmlFrom.m_F_b_LoadXML(sFrom), bOpen);
            ASSERT_TRUE(xmlTo.m_F_b_LoadXML(QString::fromLatin1(pszTo)));
            ASSERT_TRUE(xmlByHand.m_F_b_LoadXML(QString::fromLatin1(pszTo)));
            EXPECT_TRUE(xmlTo.m_F_b_CopyValues(xmlFrom, u"/root/A"_s, u"/root/B"_s, arKeys));
            for (const auto& stKey : arKeys) {
                QString sValue;
                xmlFrom.m_F_n_GetValue(u"A"_s, QString::fromLatin1(stKey.pszKey), sValue,
                                       QString::fromLatin1(stKey.pszDefault));
                xmlByHand.m_F_b_SetValue(u"B"_s, QString::fromLatin1(stKey.pszKey),
                                         stKey.pValue ? *stKey.pValue : sValue);
            }
            EXPECT_EQ(xmlTo.m_F_s_GetXML().toStdString(), xmlByHand.m_F_s_GetXML().toStdString());
            CXmlObj xmlAgain;
            EXPECT_TRUE(xmlAgain.m_F_b_LoadXML(xmlTo.m_F_s_GetXML()));
            EXPECT_EQ(Value(xmlAgain, u"B"_s, u"Name"_s), sName.toStdString());
        }
    }
    CXmlObj xmlSame, xmlClosed;
    ASSERT_TRUE(xmlSame.m_F_b_LoadXML(sFrom));
    EXPECT_TRUE(xmlSame.m_F_b_CopyValues(xmlSame, u"A"_s, u"C/D"_s, arKeys));
    EXPECT_EQ(Value(xmlSame, u"C/D"_s, u"Amp"_s), "&<A");
    EXPECT_FALSE(xmlClosed.m_F_b_CopyValues(xmlSame, u"A"_s, u"A"_s, arKeys));
    EXPECT_FALSE(xmlSame.m_F_b_CopyValues(xmlSame, u"A"_s, u"no name!"_s, arKeys));
}

TEST(Xml, DepthIsBounded)
{
    const QString sDeep = u"x/"_s.repeated(254) + u"x"_s;
    CXmlObj objXml, objCopy;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<r><a/></r>"_s));
    EXPECT_FALSE(objXml.m_F_b_SetValue(sDeep + u"/x"_s, u"k"_s, 1));
    EXPECT_FALSE(objXml.m_F_b_SetNods(u""_s, u"a"_s, u"<a>"_s.repeated(256) + u"</a>"_s.repeated(256)));
    EXPECT_EQ(objXml.m_F_s_GetXML(), u"<r><a/></r>"_s);
    EXPECT_TRUE(objXml.m_F_b_SetValue(sDeep, u"k"_s, u"a\tb\nc"_s)); // 256 levels
    EXPECT_FALSE(objXml.m_F_b_AddNods(sDeep, u"x"_s));
    ASSERT_TRUE(objCopy.m_F_b_LoadXML(objXml.m_F_s_GetXML()));
    EXPECT_EQ(Value(objCopy, sDeep, u"k"_s), "a\tb\nc");
}

TEST(Xml, HostileTextLeavesItClosed)
{
    const auto fnNested = [](int nLevels) { return u"<a>"_s.repeated(nLevels) + u"</a>"_s.repeated(nLevels); };
    const QString sOdd = u"<r a=\"&#0;&#x110000;&#xD800;&#;&#-1;&#+65;&;&#99999999999;\"/>"_s;
    std::vector<std::pair<QString, bool>> arRows = {
        {fnNested(256), true},
        {fnNested(257), false},
        {u"<a>"_s.repeated(256) + u" <b/><a/>"_s + u"</a>"_s.repeated(256), false},
        {fnNested(100'000), false},
        {u"<a>"_s.repeated(100'000), false},
        {u"<r>"_s + QString(17 << 20, u' ') + u"</r>"_s, false},
        {u"<r a=\"\xDC00x\xD83D\"/>"_s, true}, // half a character
        {sOdd, true},
    };
    for (const stDef_TableRow& row : ReadTable("hostile.txt", 2))
        arRows.push_back({QString::fromStdString(row[0]), false});
    CXmlObj objXml;
    for (const auto& [sText, bLoads] : arRows) {
        ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<before/>"_s));
        EXPECT_EQ(objXml.m_F_b_LoadXML(sText), bLoads) << sText.left(80).toStdString();
        EXPECT_EQ(objXml.m_F_b_IsOpen(), bLoads) << sText.left(80).toStdString();
    }
    ASSERT_TRUE(objXml.m_F_b_LoadXML(sOdd));
    EXPECT_EQ(Value(objXml, u""_s, u"a"_s), "&#0;&#x110000;&#xD800;&#;&#-1;&#+65;&;&#99999999999;");
}

TEST(Xml, ClosedGivesDefaults)
{
    CXmlObj objXml;
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(objXml.m_F_b_IsOpen());
        EXPECT_EQ(objXml.m_F_n_GetValueInt(u"a"_s, u"b"_s, -5), -5);
        EXPECT_EQ(Value(objXml, u"a"_s, u"b"_s), "default");
        EXPECT_EQ(Text(objXml, u""_s), "default");
        EXPECT_FALSE(objXml.m_F_b_SetValue(u"a"_s, u"b"_s, 1));
        EXPECT_FALSE(objXml.m_F_b_AddNods(u""_s, u"b"_s) || objXml.m_F_b_RemoveNods(u""_s, u"b"_s) ||
                     objXml.m_F_b_RenameNods(u""_s, u"b"_s, u"c"_s) || objXml.m_F_b_Save(u"nowhere.xml"_s));
        EXPECT_TRUE(objXml.m_S_SelectNodesByKey(u""_s).m_F_o_NextNode().m_F_b_IsNull());
        EXPECT_TRUE(objXml.m_F_s_GetXML().isEmpty());
        ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<a/>"_s));
        CXmlObj objTaken = std::move(objXml);
        EXPECT_TRUE(objTaken.m_F_b_IsOpen());
        EXPECT_TRUE(objTaken.m_F_b_Close());
    }
}

TEST(Xml, FilesOfAnyEncodingAreSavedAsUtf8)
{
    QTemporaryDir objFolder;
    const QString sFile = objFolder.filePath(u"saved.xml"_s);
    const QByteArray sLatin = ReadFile(g_sFixtures + u"EMail_latin1.xml"_s);
    const QString sText = QString::fromLatin1(sLatin);
    const auto fnWide = [&](QStringConverter::Encoding nEncoding) {
        return QByteArray(QStringEncoder(nEncoding, QStringConverter::Flag::WriteBom).encode(sText));
    };
    const std::vector<QByteArray> arFiles = {sLatin, fnWide(QStringConverter::Utf16LE),
                                             fnWide(QStringConverter::Utf16BE), fnWide(QStringConverter::Utf32LE),
                                             fnWide(QStringConverter::Utf8)};
    const QByteArray sExpected = sText.toUtf8().replace("ISO-8859-1", "UTF-8");
    for (std::size_t i = 0; i < arFiles.size(); ++i) {
        WriteFile(objFolder.filePath(u"in.xml"_s), arFiles[i]);
        CXmlObj objXml;
        ASSERT_TRUE(objXml.m_F_b_LoadXMLFile(objFolder.filePath(u"in.xml"_s))) << i;
        EXPECT_EQ(Value(objXml, u"Mail000"_s, u"Name"_s), "Müller") << i;
        ASSERT_TRUE(objXml.m_F_b_Save(sFile));
        EXPECT_EQ(ReadFile(sFile).toStdString(), sExpected.toStdString()) << i;
    }
    EXPECT_EQ(QDir(objFolder.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{u"in.xml"_s, u"saved.xml"_s}));

    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<root/>"_s));
    EXPECT_FALSE(objXml.m_F_b_Save(objFolder.filePath(u"missing/saved.xml"_s)));
    EXPECT_FALSE(objXml.m_F_b_LoadXMLFile(objFolder.filePath(u"missing.xml"_s)));
    EXPECT_FALSE(objXml.m_F_b_IsOpen());
    EXPECT_FALSE(objXml.m_F_b_LoadXMLFile(objFolder.path()));
}

// A document as simple as it can be, to hold the real one against.
struct st_Model
{
    QString sName;
    int nMark = 0;
    std::vector<st_Model> arChildren;

    st_Model* m_F_p_Find(const QString& sChild)
    {
        const auto it =
            std::find_if(arChildren.begin(), arChildren.end(), [&](auto& st) { return st.sName == sChild; });
        return it == arChildren.end() ? nullptr : &*it;
    }
};

QString ModelText(const st_Model& stNode)
{
    QString sText = u"<"_s + stNode.sName + (stNode.nMark ? u" m=\"%1\""_s.arg(stNode.nMark) : QString());
    if (stNode.arChildren.empty())
        return sText + u"/>"_s;
    sText += u'>';
    for (const st_Model& stChild : stNode.arChildren)
        sText += ModelText(stChild);
    return sText + u"</"_s + stNode.sName + u'>';
}

TEST(Xml, RandomEditsOfLongListsAgreeWithASimpleModel)
{
    std::mt19937 objRandom(20240229);
    const auto fnPick = [&](int nCount) { return static_cast<int>(objRandom() % static_cast<unsigned>(nCount)); };
    const auto fnName = [&] { return u"N%1"_s.arg(fnPick(60), 3, 10, QChar(u'0')); };
    st_Model stRoot{u"root"_s, 0, {}};
    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<root/>"_s));
    for (int i = 1; i <= 20'000; ++i) {
        // Half of the edits are one level down, so that elements with an index of their own come and go.
        const QString sParent = fnPick(2) ? QString() : u"N00%1"_s.arg(fnPick(4));
        st_Model* pParent = sParent.isEmpty() ? &stRoot : stRoot.m_F_p_Find(sParent);
        const QString sName = fnName();
        st_Model* pChild = pParent ? pParent->m_F_p_Find(sName) : nullptr;
        const int nEdit = fnPick(10);
        if (nEdit < 3) {
            ASSERT_EQ(objXml.m_F_b_AddNods(sParent, sName), pParent != nullptr);
            if (pParent)
                pParent->arChildren.push_back({sName, 0, {}});
        } else if (nEdit < 6) {
            ASSERT_EQ(objXml.m_F_b_RemoveNods(sParent, sName), pChild != nullptr);
            if (pChild)
                pParent->arChildren.erase(pParent->arChildren.begin() + (pChild - pParent->arChildren.data()));
        } else if (nEdit < 9) {
            const QString sNew = fnName();
            ASSERT_EQ(objXml.m_F_b_RenameNods(sParent, sName, sNew), pChild != nullptr);
            if (pChild)
                pChild->sName = sNew;
        } else if (const QString sPath = sParent + (sParent.isEmpty() ? u""_s : u"/"_s) + sName; fnPick(3) == 0) {
            ASSERT_EQ(objXml.m_F_b_SetNods(sParent, sName, objXml.m_F_s_GetNods(sPath)), pChild != nullptr);
        } else if (pParent) {
            ASSERT_TRUE(objXml.m_F_b_SetValue(sPath, u"m"_s, i));
            (pChild ? *pChild : pParent->arChildren.emplace_back(st_Model{sName, 0, {}})).nMark = i;
        }
        const QString sRead = fnName();
        st_Model* pRead = stRoot.m_F_p_Find(sRead);
        const int nMark = pRead && pRead->nMark ? pRead->nMark : -1;
        ASSERT_EQ(objXml.m_F_n_GetValueInt(u"/root/"_s + sRead, u"m"_s, -1), nMark) << i;
        if (i % 500 == 0) {
            ASSERT_EQ(objXml.m_F_s_GetXML().toStdString(), ModelText(stRoot).toStdString()) << i;
        }
    }
}

TEST(Xml, AListThatIsGoneIsForgotten)
{
    CXmlObj objXml;
    ASSERT_TRUE(objXml.m_F_b_LoadXML(u"<root/>"_s));
    for (int nRound = 0; nRound < 400; ++nRound) {
        // Freed memory comes back as other elements: the same names in another order.
        const int nItems = 20 + nRound % 2;
        for (int i = 0; i < nItems; ++i)
            ASSERT_TRUE(objXml.m_F_b_SetValue(u"List/Item%1"_s.arg((i * 11 + nRound) % nItems), u"Value"_s, i));
        for (int i = 0; i < nItems; ++i)
            ASSERT_EQ(objXml.m_F_n_GetValueInt(u"List/Item%1 "_s.arg((i * 11 + nRound) % nItems), u"Value"_s, -1), i);
        ASSERT_TRUE(objXml.m_F_b_RemoveNods(u""_s, u"List"_s));
    }
}

} // namespace
