#pragma once

#include <QList>
#include <QString>
#include <vector>

#include "toolkit/form/CValueRows.h"

/// Tells whether documents changed since they were fetched, also by what windows have not stored yet.
class CDocumentWatch
{
public:
    /// Stores what is pending into the documents that stand in for the real ones.
    using Store = std::function<void(const CValueRows::Substitute& fnSubstitute)>;

    /// The documents, which are borrowed, as they are now.
    void m_S_Begin(const QList<CXmlObj*>& arDocuments);
    /// Whether one of them would be another after `fnStore`, which works on copies: the documents stay as they are.
    bool m_F_b_Changed(const Store& fnStore) const;

private:
    struct stDef_Row
    {
        CXmlObj* pDocument;
        QString sText; ///< as it was
    };

    std::vector<stDef_Row> vm_arRows;
};
