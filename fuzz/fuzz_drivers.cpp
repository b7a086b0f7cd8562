#include <QApplication>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "Expect.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/brands/Drivers.h"

using namespace Qt::StringLiterals;

namespace {

CWndNvrEmbedded* g_pNvr = nullptr;

QString Value(const QString& sPath, const QString& sKey)
{
    QString sValue;
    g_pNvr->vm_xmlCamera.m_F_n_GetValue(sPath, sKey, sValue, {});
    return sValue;
}

void TryDriver(CCamObj_Base& objCamera, CXmlObj& xmlDetect, CXmlObj& xmlSupport)
{
    const QString sNode = u"/root/Camera/Cam001"_s, sCopy = u"/root/Camera/Cam002"_s;
    g_pNvr->vm_xmlCamera.m_F_b_LoadXML(u"<root><Camera count='1'><Cam000 IP='kept'/></Camera></root>"_s);
    objCamera.m_nCamIndex = 1;
    Expect(objCamera.m_F_b_ApplyDetect(&xmlDetect), "an open Camera document is enough");
    Expect(objCamera.m_F_b_ApplyTemplate(&xmlDetect, &xmlSupport), "an open Camera document is enough");
    Expect(Value(sNode, u"Name"_s) == Value(sNode, u"Model"_s) + u' ' + Value(sNode, u"IP"_s), "the name is composed");
    objCamera.m_F_b_CopyToIndex(2);
    for (const QString& sKey : {u"IP"_s, u"Name"_s, u"FPS"_s, u"Password"_s})
        Expect(Value(sNode, sKey) == Value(sCopy, sKey), "a copy is alike");
    CXmlObj xmlAgain;
    Expect(xmlAgain.m_F_b_LoadXML(g_pNvr->vm_xmlCamera.m_F_s_GetXML()), "what was written can be read");
    Expect(Value(u"/root/Camera/Cam000"_s, u"IP"_s) == u"kept"_s, "other cameras stay as they are");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArgc, char*** pppArgs)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(*pArgc, *pppArgs); // for good
    g_pNvr = static_cast<CWndNvrEmbedded*>(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, nullptr));
    return 0;
}

/// System document, detect reply and abilities of a camera, with a line of dashes between them; given to all drivers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const QStringList arParts =
        QString::fromUtf8(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize)).split(u"\n----\n"_s);
    CXmlObj xmlDetect, xmlSupport;
    g_pNvr->vm_xmlSystem.m_F_b_LoadXML(arParts.value(0));
    xmlDetect.m_F_b_LoadXML(arParts.value(1));
    xmlSupport.m_F_b_LoadXML(arParts.value(2));
    for (const stDef_Driver& stDriver : DriverList()) {
        const std::unique_ptr<CCamObj_Base> pCamera(CCamObj_Base::s_F_p_CreateCamObj(stDriver.nVendorID, g_pNvr));
        TryDriver(*pCamera, xmlDetect, xmlSupport);
    }
    return 0;
}
