#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "core/CReplyEnvelope.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_arPaths[] = {u"/root"_s, u"/root/Camera/Cam000"_s, u"Msg"_s, QString(), u"//"_s};

void Visit(CXmlObj& objXml)
{
    for (const QString& sPath : g_arPaths) {
        QString sOut;
        objXml.m_F_n_GetValue(sPath, u"count"_s, sOut, u"7"_s);
        objXml.m_F_n_GetValueInt(sPath, u"count"_s, 7);
        objXml.m_F_n_GetText(sPath, sOut, {});
        CXmlNodeList objList = objXml.m_S_SelectNodesByKey(sPath);
        for (int i = 0; i < 10 && !objList.m_F_o_NextNode().m_F_b_IsNull(); ++i) {
        }
    }
}

} // namespace

/// The body of a recorder's reply on its way into a document, and back out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const QByteArray sBody(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize));
    CXmlObj objXml;
    if (!objXml.m_F_b_LoadXML(CReplyEnvelope::s_F_s_CutRoot(CSFunc::s_F_s_Utf8ToUnicode(sBody)))) {
        Expect(!objXml.m_F_b_IsOpen(), "a document that failed to load is closed");
        Visit(objXml);
        return 0;
    }
    Visit(objXml);
    const QString sText = objXml.m_F_s_GetXML();
    CXmlObj objAgain;
    Expect(objAgain.m_F_b_LoadXML(sText), "what goes out can be read in");
    Expect(objAgain.m_F_s_GetXML() == sText, "what was read in goes out the same");
    objXml.m_F_b_SetValue(g_arPaths[1], u"Name"_s, sText.left(20));
    objXml.m_F_b_RenameNods(u"/root/Camera"_s, u"Cam000"_s, u"Cam001"_s);
    objXml.m_F_b_RemoveNods(u"/root"_s, u"Camera"_s);
    return 0;
}
