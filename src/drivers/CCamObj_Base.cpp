#include "drivers/CCamObj_Base.h"

#include <QApplication>
#include <QWidget>
#include <cstring>
#include <vector>

#include "core/CPageRequests.h"
#include "core/CWndNvrShared.h"
#include "drivers/CTemplateMap.h"
#include "drivers/stDef_DriverRow.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t CameraRoot[] = u"/root/Camera";
constexpr char DefaultRtspPort[] = "554";

QString NodeName(int nIndex)
{
    return QString::asprintf("Cam%03d", nIndex);
}

QString NodePath(int nIndex)
{
    return QString::fromUtf16(CameraRoot) + u'/' + NodeName(nIndex);
}

/// From one camera's node to another's, in the same document or from a reply: all keys of the driver in their order,
/// and behind `pszBefore` the camera's name.
void Copy(const stDef_DriverRow& stRow, const CXmlObj& xmlFrom, int nFrom, CXmlObj& xmlTo, int nTo,
          const char* pszRtspPort, const char* pszBefore, const QString& sName)
{
    std::vector<CXmlObj::st_CopyKey> arKeys;
    arKeys.reserve(64);
    for (const nsDriverKeys::Group& arGroup : stRow.arGroups) {
        for (const char* const pszKey : arGroup) {
            arKeys.push_back({pszKey, std::strcmp(pszKey, "RtspPort") == 0 ? pszRtspPort : ""});
            if (std::strcmp(pszKey, pszBefore) == 0)
                arKeys.push_back({"Name", "", &sName});
        }
    }
    xmlTo.m_F_b_CopyValues(xmlFrom, NodePath(nFrom), NodePath(nTo), arKeys);
}

QString Value(const CXmlObj& xml, int nIndex, const QString& sKey)
{
    return xml.m_F_s_Value(NodePath(nIndex), sKey);
}

/// The documents of the connection; a closed one where there is no connection.
CXmlObj& Document(CWndNvrBase* pNvr, CXmlObj CWndNvrShared::*pMember)
{
    static CXmlObj s_xmlClosed;
    auto* const pShared = qobject_cast<CWndNvrShared*>(pNvr);
    return pShared ? pShared->*pMember : s_xmlClosed;
}

} // namespace

QString CCamObj_Base::s_F_s_Url(const QString& sAction, const QString& sIP, int nHttpPort, const QString& sUser,
                                const QString& sPassword, int nVendorID, int nOnvifAuth)
{
    // One call, so that a "%1" in a value is none of the format's.
    return u"cgi-bin/param.cgi?action=%1&ip=%2&port=%3&uid=%4&pwd=%5&vendorid=%6&onvifauth=%7"_s.arg(
        sAction, sIP, QString::number(nHttpPort), sUser, sPassword, QString::number(nVendorID),
        QString::number(nOnvifAuth));
}

CCamObj_Base::~CCamObj_Base()
{
    delete m_pMotionWnd;
}

void CCamObj_Base::m_S_Release(CCamObj_Base** ppSelf)
{
    if (ppSelf)
        *ppSelf = nullptr;
    delete this;
}

bool CCamObj_Base::m_F_b_SetConnect(stDef_CamConnect stConnect)
{
    if (stConnect.strIP.isEmpty() || stConnect.nHttpPort < 0 || stConnect.strUser.isEmpty())
        return false;
    m_stConnect = std::move(stConnect);
    return true;
}

bool CCamObj_Base::m_F_b_ApplyDetect(CXmlObj* pDetect)
{
    CXmlObj& xmlCamera = Document(m_pNvr, &CWndNvrShared::vm_xmlCamera);
    if (!xmlCamera.m_F_b_IsOpen() && !pDetect->m_F_b_IsOpen())
        return false;
    const QString sName = Value(*pDetect, 0, u"Model"_s) + u' ' + Value(*pDetect, 0, u"IP"_s);
    Copy(vm_stRow, *pDetect, 0, xmlCamera, m_nCamIndex, DefaultRtspPort, "IP", sName);
    return true;
}

bool CCamObj_Base::m_F_b_ApplyTemplate(CXmlObj* pDetect, CXmlObj* pSupport)
{
    CXmlObj& xmlCamera = Document(m_pNvr, &CWndNvrShared::vm_xmlCamera);
    if (!xmlCamera.m_F_b_IsOpen() && !pSupport->m_F_b_IsOpen())
        return false;
    CTemplateMap objMap(Document(m_pNvr, &CWndNvrShared::vm_xmlSystem), *pDetect, *pSupport, xmlCamera,
                        NodePath(m_nCamIndex));
    m_S_MapTemplate(objMap);
    return true;
}

void CCamObj_Base::m_F_b_CopyToIndex(int nNewIndex)
{
    CXmlObj& xmlCamera = Document(m_pNvr, &CWndNvrShared::vm_xmlCamera);
    if (!xmlCamera.m_F_b_IsOpen() || nNewIndex == m_nCamIndex)
        return;
    xmlCamera.m_F_b_RemoveNods(QString::fromUtf16(CameraRoot), NodeName(nNewIndex));
    Copy(vm_stRow, xmlCamera, m_nCamIndex, xmlCamera, nNewIndex, vm_stRow.pszCopiedRtspPort, "Model",
         Value(xmlCamera, m_nCamIndex, u"Name"_s));
}

bool CCamObj_Base::m_F_b_GetSupport(CXmlObj* pSupport, int nTimeoutMs)
{
    const auto Wide = [](const QByteArray& s) { return CSFunc::s_F_s_AnsiToUnicode(s); };
    const QString sUrl =
        s_F_s_Url(u"camerasupport"_s, Wide(m_stConnect.strIP), m_stConnect.nHttpPort, Wide(m_stConnect.strUser),
                  Wide(m_stConnect.strPassword), m_stConnect.nVendorID, m_stConnect.nOnvifAuth);
    return m_pNvr && CPageRequests(m_pNvr, QApplication::activeWindow(), nsTexts::AskingCamera)
                         .m_F_b_Get(sUrl, pSupport, nTimeoutMs);
}

QString CCamObj_Base::m_F_s_NodePath() const
{
    return NodePath(m_nCamIndex);
}
