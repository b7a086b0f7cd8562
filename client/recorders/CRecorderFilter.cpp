#include "recorders/CRecorderFilter.h"

#include <QKeyEvent>
#include <QShortcut>

#include "recorders/CRecorderTree.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

CRecorderFilter::CRecorderFilter(CRecorderTree* pTree, QWidget* pParent) : QLineEdit(pParent), vm_pTree(pTree)
{
    setObjectName(u"RecorderFilter"_s);
    setClearButtonEnabled(true);
    setMaxLength(256);
    m_S_Retranslate();
    connect(this, &QLineEdit::textChanged, pTree, &CRecorderTree::m_S_SetFilter);
    auto* const pFind = new QShortcut(QKeySequence(u"Ctrl+F"_s), this);
    pFind->setContext(Qt::WindowShortcut);
    connect(pFind, &QShortcut::activated, this, [this] {
        setFocus(Qt::ShortcutFocusReason);
        selectAll();
    });
}

// Esc is also the window's, to leave the full screen; here it comes first.
bool CRecorderFilter::event(QEvent* pEvent)
{
    const bool bOurs = pEvent->type() == QEvent::ShortcutOverride && !text().isEmpty() &&
                       static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_Escape;
    if (bOurs)
        pEvent->accept();
    return bOurs || QLineEdit::event(pEvent);
}

void CRecorderFilter::keyPressEvent(QKeyEvent* pEvent)
{
    const int nKey = pEvent->key();
    if (nKey == Qt::Key_Escape && !text().isEmpty())
        clear();
    else if (nKey == Qt::Key_Down || nKey == Qt::Key_Return || nKey == Qt::Key_Enter)
        vm_pTree->setFocus(Qt::OtherFocusReason);
    else
        QLineEdit::keyPressEvent(pEvent);
}

void CRecorderFilter::changeEvent(QEvent* pEvent)
{
    QLineEdit::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
}

void CRecorderFilter::m_S_Retranslate()
{
    setPlaceholderText(Tr(nsHost::TreeFilter));
    setAccessibleName(Tr(nsHost::TreeFilter));
    setToolTip(Tr(nsHost::TreeFilterTip));
}
