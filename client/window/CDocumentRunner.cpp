#include "window/CDocumentRunner.h"

#include <QElapsedTimer>
#include <array>
#include <iterator>

#include "core/CWndNvrBase.h"
#include "toolkit/user/CWaitCursor.h"

namespace {

struct stDef_DocumentRow
{
    const char* pszName;
    const char* pszFetch;
    int nFetchTimeoutMs;
    const char* pszPost; ///< null: the recorder takes no such document
};

constexpr int PostTimeoutMs = 50000;

constexpr stDef_DocumentRow g_astDocuments[] = {
    {"SystemInfo", "cgi-bin/param.cgi?action=systeminfo", 50000, nullptr},
    {"LoginInfo", "cgi-bin/logininfo.cgi", 5000, nullptr},
    {"System", "cgi-bin/SyncSetting.cgi?action=SystemXML", 5000, "cgi-bin/SyncSetting.cgi?action=UpdateSystem"},
    {"Schedule", "cgi-bin/SyncSetting.cgi?action=ScheduleXML", 5000, "cgi-bin/SyncSetting.cgi?action=UpdateSchedule"},
    {"Camera", "cgi-bin/SyncSetting.cgi?action=CameraXML", 5000, "cgi-bin/SyncSetting.cgi?action=UpdateCamera"},
    {"EMail", "cgi-bin/SyncSetting.cgi?action=EMailXML", 5000, "cgi-bin/SyncSetting.cgi?action=UpdateEMail"},
};

void Fetch(CWndNvrBase& objNvr, const stDef_DocumentRow& stRow, CXmlObj& objXml, stDef_DocumentResult& stResult)
{
    QElapsedTimer objClock;
    objClock.start();
    stResult.bFetched = objNvr.m_F_b_GetRequest(QString::fromLatin1(stRow.pszFetch), &objXml, stRow.nFetchTimeoutMs);
    stResult.nFetchMs = objClock.elapsed();
    if (stResult.bFetched)
        stResult.nFetchedBytes = objXml.m_F_s_GetUtf8().size();
}

void Post(CWndNvrBase& objNvr, const stDef_DocumentRow& stRow, CXmlObj& objXml, stDef_DocumentResult& stResult)
{
    QElapsedTimer objClock;
    objClock.start();
    stResult.bPosted = objNvr.m_F_b_PostRequest(QString::fromLatin1(stRow.pszPost), &objXml, PostTimeoutMs) &&
                       objNvr.vm_objHttp.m_F_b_LastTaken();
    stResult.nPostMs = objClock.elapsed();
    if (stResult.bPosted)
        stResult.nPostedBytes = objXml.m_F_s_GetUtf8().size();
}

} // namespace

QList<stDef_DocumentResult>
CDocumentRunner::s_F_ar_Run(CWndNvrBase& objNvr, const std::function<void(const QList<stDef_DocumentResult>&)>& fnStep)
{
    const CWaitCursor objCursor;
    std::array<CXmlObj, std::size(g_astDocuments)> arXml;
    QList<stDef_DocumentResult> arResults;
    const auto Step = [&] {
        if (fnStep)
            fnStep(arResults);
    };
    for (std::size_t i = 0; i < arXml.size(); ++i) {
        stDef_DocumentResult stResult;
        stResult.sDocument = QString::fromLatin1(g_astDocuments[i].pszName);
        stResult.bPostable = g_astDocuments[i].pszPost != nullptr;
        Fetch(objNvr, g_astDocuments[i], arXml[i], stResult);
        arResults.append(stResult);
        Step();
    }
    // The recorder applies its settings as they come: System goes last.
    for (std::size_t i = arXml.size(); i-- > 0;) {
        stDef_DocumentResult& stResult = arResults[static_cast<qsizetype>(i)];
        if (!stResult.bFetched || !stResult.bPostable)
            continue; // a document that didn't come must never go back empty
        Post(objNvr, g_astDocuments[i], arXml[i], stResult);
        Step();
    }
    return arResults;
}
