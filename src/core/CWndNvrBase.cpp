#include "core/CWndNvrBase.h"

#include <QApplication>
#include <QDialog>
#include <algorithm>

#include "core/CDipsReply.h"
#include "core/CNvrTransfer.h"
#include "core/CPageRequests.h"
#include "core/CPtzCommand.h"
#include "core/CWndNvrEmbedded.h"
#include "core/CWndNvrPC.h"
#include "core/DocumentTable.h"
#include "core/ProductStrings.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxNvrID = 1000;
constexpr int CommandTimeoutMs = 2000;

} // namespace

CWndNvrBase* CWndNvrBase::s_F_p_CreateNvrObject(int nType, QWidget* pParent, CEnvObj* pEnv)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return nullptr;
    switch (nType) {
    case 0:
        return new CWndNvrPC(pParent, pEnv);
    case 1:
        return new CWndNvrEmbedded(pParent, pEnv);
    default:
        return nullptr;
    }
}

CWndNvrBase* CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(int nNvrID, QWidget* pParent, CEnvObj* pEnv)
{
    if (!pEnv)
        return nullptr;
    const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
    return s_F_p_CreateNvrObject(pEnv->m_F_p_GetMemSysXML()->m_F_n_GetValueInt(sNode, u"Type"_s, -1), pParent, pEnv);
}

void CWndNvrBase::s_S_ReleaseNvrObject(CWndNvrBase** ppObj)
{
    if (ppObj && *ppObj)
        (*ppObj)->m_S_DeleteSelf(ppObj);
}

stDef_DipsTarget& CWndNvrBase::s_F_o_DipsTarget()
{
    static stDef_DipsTarget s_stTarget{nsProduct::g_szDirectoryHost};
    return s_stTarget;
}

CWndNvrBase::CWndNvrBase(QWidget* pParent, CEnvObj* pEnv) : vm_pParent(pParent), vm_objReply(0), vm_pEnv(pEnv) {}

CWndNvrBase::~CWndNvrBase()
{
    vm_objHttp.m_S_Release();
}

void CWndNvrBase::m_S_Leave()
{
    if (vm_nUses == 0) {
        delete this;
        return;
    }
    vm_bReleased = true;
    for (CPageRequests* const pRequests : QList(vm_arRequests))
        pRequests->m_S_Stop();
    m_S_CloseWindows();
}

// The innermost first.
void CWndNvrBase::m_S_CloseWindows()
{
    QList<QPointer<QWidget>> arWindows;
    for (QWidget* const pWidget : findChildren<QWidget*>()) {
        if (pWidget->isWindow() && pWidget->isVisible())
            arWindows.prepend(pWidget);
    }
    for (const QPointer<QWidget>& pWindow : arWindows) {
        if (auto* const pDialog = qobject_cast<QDialog*>(pWindow.data()))
            pDialog->reject();
        else if (pWindow)
            pWindow->close();
    }
}

CNvrUse::CNvrUse(CWndNvrBase* pNvr) : vm_pNvr(pNvr)
{
    ++vm_pNvr->vm_nUses;
}

CNvrUse::~CNvrUse()
{
    if (--vm_pNvr->vm_nUses == 0 && vm_pNvr->vm_bReleased)
        delete vm_pNvr;
}

void CWndNvrBase::m_S_CreateWindow()
{
    if (vm_bWindow)
        return;
    vm_bWindow = true;
    setProperty("id", 0);
    setGeometry(0, 0, 0, 0);
    if (!vm_pParent)
        return;
    setParent(vm_pParent);
    hide(); // said once, it isn't shown along with its parent
    // A dying window deletes its children, but this one is the host's to release: step out of the way in time.
    connect(vm_pParent, &QObject::destroyed, this, [this] { setParent(nullptr); });
}

int CWndNvrBase::m_F_n_Init(stDef_NvrInit stInit)
{
    m_S_CreateWindow();
    if (stInit.nNvrID > MaxNvrID || stInit.sIP.isEmpty() || stInit.nHttpPort < 0 || stInit.sUID.isEmpty())
        return 0;
    vm_stInit = std::move(stInit);
    if (vm_stInit.bDips && !m_F_b_DipsToIpPort(vm_stInit.sDips, vm_stInit.sIP, vm_stInit.nHttpPort))
        return 0;
    return 1;
}

bool CWndNvrBase::m_F_b_InitLanguageXml(const QString& sFile)
{
    vm_objLang.m_F_b_LoadXMLFile(sFile);
    return true;
}

int CWndNvrBase::m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const
{
    return vm_objLang.m_F_b_IsOpen() ? vm_objLang.m_F_n_GetLangStr(sKey, sOut, sDefault) : -1;
}

void CWndNvrBase::m_S_InitHTTP()
{
    vm_objHttp.m_S_Init(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort);
}

void CWndNvrBase::m_S_ReleaseHTTP()
{
    vm_objHttp.m_S_Release();
}

int CWndNvrBase::m_F_n_MultiPartStreamGet(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    if (!pMem)
        return -1;
    const auto nSize = static_cast<quint32>(std::min<quint64>(pMem->m_F_n_GetMemSize(), UINT32_MAX));
    return vm_objHttp.m_F_n_MultiPartStreamGet(CSFunc::s_F_s_UnicodeToAnsi(sUrl), pMem->m_F_p_GetStrCHAR(), nSize,
                                               nTimeoutMs);
}

bool CWndNvrBase::m_F_b_DipsToIpPort(const QByteArray& sId, QByteArray& sAddress, int& nPort)
{
    if (sId.isEmpty())
        return false;
    const stDef_DipsTarget& stDips = s_F_o_DipsTarget();
    const QByteArray sUrl = nsProduct::g_szDirectoryRequest + "?id="_ba + sId;
    CNvrTransfer objTransfer(*this);
    CMemManage& objReply = objTransfer.m_F_o_Reply();
    const int nBytes = objTransfer.m_F_o_Http().m_F_n_HTTPGetDataDirect(stDips.sHost, {}, {}, stDips.nPort, sUrl,
                                                                        &objReply, stDips.nTimeoutMs);
    if (nBytes < 0)
        return false;

    return CDipsReply::s_F_b_Parse(QByteArray(objReply.m_F_p_GetStrCHAR()), sAddress, nPort);
}

void CWndNvrBase::m_S_AbandonRequests()
{
    const std::lock_guard objLock(vm_objAbandonMutex);
    vm_bAbandoned = true;
    vm_objHttp.m_S_AbandonDirect();
    for (CHTTP* const pSpare : std::as_const(vm_arSpares))
        pSpare->m_S_AbandonDirect();
}

void CWndNvrBase::m_S_ExecPTZCmd(int nCmd, int nCamera, int nParam1, int nParam2)
{
    const QByteArray sUrl = CPtzCommand::s_F_s_Url(nCmd, nCamera, nParam1, nParam2);
    if (!sUrl.isEmpty())
        vm_objHttp.m_F_n_HTTPGetData(sUrl, CommandTimeoutMs);
}

void CWndNvrBase::m_S_RemoteUICtrl(int nFullScreen, int nQuad, int nStyle, const QString& sCamArray)
{
    const QString sUrl = QString::asprintf(
        "cgi-bin/uictrl.cgi?action=urlctrl&fullscreen=%d&quad=%d&style=%d&camarray=", nFullScreen, nQuad, nStyle);
    vm_objHttp.m_F_n_HTTPGetData(CSFunc::s_F_s_UnicodeToAnsi(sUrl + sCamArray), CommandTimeoutMs);
}

void CWndNvrBase::m_S_GetLoginInfo(QStringList* pList)
{
    if (!pList)
        return;
    pList->clear();
    CXmlObj xmlReply;
    const stDef_Document& stDocument = nsDocuments::LoginInfo;
    m_F_b_GetRequest(QString::fromLatin1(stDocument.pszFetch), &xmlReply, stDocument.nFetchTimeoutMs);
    for (const QString& sPath : {u"/root/Preview_Privilege"_s, u"/root/DeviceFunc"_s}) {
        QString sText;
        xmlReply.m_F_n_GetText(sPath, sText, {});
        pList->append(sText);
    }
}
