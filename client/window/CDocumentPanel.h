#pragma once

#include <QDockWidget>

#include "window/CDocumentRunner.h"

class QLabel;
class QTableWidget;

/// The table of an exchange: document, bytes and times both ways, result.
class CDocumentPanel : public QDockWidget
{
    Q_OBJECT

public:
    explicit CDocumentPanel(QWidget* pParent = nullptr);

    /// Shows the rows so far and paints them at once, also while the GUI thread is busy with requests.
    void m_S_ShowResults(const QList<stDef_DocumentResult>& arResults);
    void m_S_ShowSummary(const QString& sText);

    /// What the last column says of a document.
    static QString s_F_s_Result(const stDef_DocumentResult& stResult);

private:
    QTableWidget* vm_pTable;
    QLabel* vm_pSummary;
};
