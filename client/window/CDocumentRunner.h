#pragma once

#include <QList>
#include <QString>
#include <cstdint>
#include <functional>

class CWndNvrBase;

/// What came of one document.
struct stDef_DocumentResult
{
    QString sDocument;
    bool bFetched = false;
    std::int64_t nFetchedBytes = 0; ///< of the document, as UTF-8
    std::int64_t nFetchMs = 0;
    bool bPostable = false; ///< the recorder takes this document back
    bool bPosted = false;
    std::int64_t nPostedBytes = 0;
    std::int64_t nPostMs = 0;

    bool m_F_b_Ok() const { return bFetched && (bPosted || !bPostable); }
};

/// Fetches all documents of a recorder and posts its settings back as they came. Blocks the GUI thread under a wait
/// cursor, as every request of the library does; at most as long as the time-outs of the requests together.
class CDocumentRunner
{
public:
    /// `fnStep` is told the rows so far after each request.
    static QList<stDef_DocumentResult>
    s_F_ar_Run(CWndNvrBase& objNvr, const std::function<void(const QList<stDef_DocumentResult>&)>& fnStep = {});
};
