#include "setup/system/DirectoryTest.h"

#include "core/CWndNvrEmbedded.h"
#include "toolkit/user/CRequestRun.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text AskingText{"AskingDIPS", "The directory service is asked."};
constexpr Text StopText{"Stop", "Stop"};
constexpr int TimeoutMs = 10000;
constexpr int DefaultPort = 80;

} // namespace

QString nsDirectoryTest::Run(CWndNvrEmbedded& objNvr, QWidget* pPage)
{
    const CXmlObj& xmlInfo = objNvr.vm_xmlSystemInfo;
    const auto Value = [&](const QString& sKey) { return xmlInfo.m_F_s_Value(u"/root/Local"_s, sKey); };
    // The recorder's port is told to the service, and is the one at which the service is asked: it has none of its own.
    const QString sPortKey = Value(u"ExternalIP"_s).isEmpty() ? u"HttpPort"_s : u"ExternalPort"_s;
    const int nPort = xmlInfo.m_F_n_GetValueInt(u"/root/Local"_s, sPortKey, DefaultPort);
    const QByteArray sPath =
        u"%1?id=%2&ip=%3&port=%4"_s
            .arg(Value(u"DIPS_CGI"_s), Value(u"DIPS"_s), Value(u"PublicIP"_s), QString::number(nPort))
            .toUtf8();
    const QByteArray sHost = Value(u"DIPS_URL"_s).toUtf8();

    const auto Word = [&](const Text& st) { return objNvr.m_F_s_Text(st, QString::fromUtf8(st.pszDefault)); };
    const CNvrUse objUse(&objNvr);
    CHTTP objHttp;
    CMemManage objReply;
    int nResult = -1;
    CRequestRun(pPage, {pPage->window()->windowTitle(), Word(AskingText), Word(StopText)})
        .m_F_b_Run(
            [&] { nResult = objHttp.m_F_n_HTTPGetDataDirect(sHost, {}, {}, nPort, sPath, &objReply, TimeoutMs); },
            [&] { objHttp.m_S_AbandonDirect(); });
    return nResult < 0 ? u"FAILED"_s : QString::fromUtf8(objReply.m_F_p_GetStrCHAR()).toUpper();
}
