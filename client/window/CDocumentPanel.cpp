#include "window/CDocumentPanel.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr stDef_Text g_astColumns[] = {
    {"ColumnDocument", "Document"},       {"ColumnResult", "Result"},   {"ColumnFetched", "Downloaded"},
    {"ColumnFetchTime", "Download time"}, {"ColumnPosted", "Uploaded"}, {"ColumnPostTime", "Upload time"},
};

constexpr int TextColumns = 2; // the rest are figures
constexpr int Rows = 6;

QString Figure(bool bThere, stDef_Text stUnit, std::int64_t nValue)
{
    return bThere ? Tr(stUnit).arg(QLocale().toString(qlonglong(nValue))) : u"\u2013"_s;
}

} // namespace

CDocumentPanel::CDocumentPanel(QWidget* pParent)
    : QDockWidget(pParent), vm_pTable(new QTableWidget(0, int(std::size(g_astColumns)))), vm_pSummary(new QLabel)
{
    setObjectName(u"Documents"_s);
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    vm_pSummary->setTextFormat(Qt::PlainText); // names of recorders stand in it
    vm_pTable->setObjectName(u"DocumentTable"_s);
    vm_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    vm_pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    vm_pTable->verticalHeader()->hide();
    vm_pTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    vm_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    vm_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    vm_pTable->setTabKeyNavigation(false);
    vm_pTable->setShowGrid(false);
    vm_pTable->setAlternatingRowColors(true);
    vm_pTable->setFrameShape(QFrame::NoFrame);
    vm_pTable->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    vm_pTable->setMinimumHeight(vm_pTable->horizontalHeader()->sizeHint().height() +
                                Rows * vm_pTable->verticalHeader()->defaultSectionSize());
    vm_pSummary->setObjectName(u"DocumentSummary"_s);
    auto* const pBody = new QWidget(this);
    auto* const pLayout = new QVBoxLayout(pBody);
    pLayout->addWidget(vm_pTable);
    pLayout->addWidget(vm_pSummary);
    setWidget(pBody);
    m_S_Retranslate();
}

void CDocumentPanel::changeEvent(QEvent* pEvent)
{
    QDockWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
}

void CDocumentPanel::m_S_Retranslate()
{
    vm_pTable->setAccessibleName(Tr(nsHost::Documents));
    QStringList arTitles;
    for (const stDef_Text& stColumn : g_astColumns)
        arTitles.append(Tr(stColumn));
    vm_pTable->setHorizontalHeaderLabels(arTitles);
    for (int nColumn = 0; nColumn < TextColumns; ++nColumn)
        vm_pTable->horizontalHeaderItem(nColumn)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_S_ShowResults(QList<stDef_DocumentResult>(vm_arResults));
    vm_pSummary->setText(m_F_s_Summary());
}

void CDocumentPanel::m_S_ShowResults(const QList<stDef_DocumentResult>& arResults)
{
    vm_arResults = arResults;
    vm_pTable->setRowCount(int(arResults.size()));
    for (int nRow = 0; nRow < arResults.size(); ++nRow) {
        const stDef_DocumentResult& stResult = arResults[nRow];
        const QString arTexts[] = {
            stResult.sDocument,
            s_F_s_Result(stResult),
            Figure(stResult.bFetched, nsHost::Bytes, stResult.nFetchedBytes),
            Figure(true, nsHost::Milliseconds, stResult.nFetchMs),
            Figure(stResult.bPosted, nsHost::Bytes, stResult.nPostedBytes),
            Figure(stResult.bPostable && stResult.bFetched, nsHost::Milliseconds, stResult.nPostMs),
        };
        for (int nColumn = 0; nColumn < int(std::size(arTexts)); ++nColumn) {
            auto* const pItem = new QTableWidgetItem(arTexts[nColumn]);
            pItem->setTextAlignment((nColumn < TextColumns ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
            vm_pTable->setItem(nRow, nColumn, pItem);
        }
    }
    vm_pTable->viewport()->repaint();
}

void CDocumentPanel::m_S_ShowOutcome(const QString& sRecorder, qint64 nMs)
{
    vm_sRecorder = sRecorder;
    vm_nMs = nMs;
    vm_pSummary->setText(m_F_s_Summary());
}

QString CDocumentPanel::m_F_s_Summary() const
{
    if (vm_sRecorder.isEmpty())
        return Tr(nsHost::ExchangeIdle);
    if (vm_nMs < 0)
        return u"%1: %2"_s.arg(vm_sRecorder, Tr(nsHost::HintUnusable));
    const auto nFailed = std::count_if(vm_arResults.begin(), vm_arResults.end(),
                                       [](const stDef_DocumentResult& stResult) { return !stResult.m_F_b_Ok(); });
    return nFailed == 0 ? Tr(nsHost::ExchangeDone).arg(vm_sRecorder).arg(vm_nMs)
                        : Tr(nsHost::ExchangeFailed).arg(vm_sRecorder).arg(nFailed).arg(vm_arResults.size());
}

QString CDocumentPanel::s_F_s_Result(const stDef_DocumentResult& stResult)
{
    if (!stResult.bFetched)
        return Tr(nsHost::ResultFetchFailed);
    if (!stResult.bPostable)
        return Tr(nsHost::ResultReadOnly);
    return Tr(stResult.bPosted ? nsHost::ResultOk : nsHost::ResultPostFailed);
}
