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
    /// Sums up what was shown: of which recorder, and in how many ms; -1 if nothing could be asked.
    void m_S_ShowOutcome(const QString& sRecorder, qint64 nMs);

    /// What the last column says of a document.
    static QString s_F_s_Result(const stDef_DocumentResult& stResult);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void m_S_Retranslate();
    QString m_F_s_Summary() const;

    QList<stDef_DocumentResult> vm_arResults;
    QString vm_sRecorder; ///< empty before the first exchange
    qint64 vm_nMs = 0;
    QTableWidget* vm_pTable;
    QLabel* vm_pSummary;
};
