#include "window/CDocumentRunner.h"

#include <QElapsedTimer>
#include <array>
#include <iterator>

#include "fleetlink/fleetlink.h"

namespace {

void Fetch(CWndNvrBase& objNvr, const stDef_Document& stDocument, CXmlObj& objXml, stDef_DocumentResult& stResult)
{
    QElapsedTimer objClock;
    objClock.start();
    stResult.bFetched =
        objNvr.m_F_b_GetRequest(QString::fromLatin1(stDocument.pszFetch), &objXml, stDocument.nFetchTimeoutMs);
    stResult.nFetchMs = objClock.elapsed();
    if (stResult.bFetched)
        stResult.nFetchedBytes = objXml.m_F_s_GetUtf8().size();
}

void Post(CWndNvrBase& objNvr, const stDef_Document& stDocument, CXmlObj& objXml, stDef_DocumentResult& stResult)
{
    QElapsedTimer objClock;
    objClock.start();
    stResult.bPosted =
        objNvr.m_F_b_PostRequest(QString::fromLatin1(stDocument.pszPost), &objXml, stDocument.nPostTimeoutMs) &&
        objNvr.m_F_b_LastTaken();
    stResult.nPostMs = objClock.elapsed();
    if (stResult.bPosted)
        stResult.nPostedBytes = objXml.m_F_s_GetUtf8().size();
}

} // namespace

QList<stDef_DocumentResult>
CDocumentRunner::s_F_ar_Run(CWndNvrBase& objNvr, const std::function<void(const QList<stDef_DocumentResult>&)>& fnStep)
{
    const CWaitCursor objCursor;
    std::array<CXmlObj, std::size(nsDocuments::All)> arXml;
    QList<stDef_DocumentResult> arResults;
    const auto Step = [&] {
        if (fnStep)
            fnStep(arResults);
    };
    for (std::size_t i = 0; i < arXml.size(); ++i) {
        stDef_DocumentResult stResult;
        stResult.sDocument = QString::fromLatin1(nsDocuments::All[i].stName.pszKey);
        stResult.bPostable = nsDocuments::All[i].pszPost != nullptr;
        Fetch(objNvr, nsDocuments::All[i], arXml[i], stResult);
        arResults.append(stResult);
        Step();
    }
    for (std::size_t i = arXml.size(); i-- > 0;) {
        stDef_DocumentResult& stResult = arResults[static_cast<qsizetype>(i)];
        if (!stResult.bFetched || !stResult.bPostable)
            continue; // a document that didn't come must never go back empty
        Post(objNvr, nsDocuments::All[i], arXml[i], stResult);
        Step();
    }
    return arResults;
}
