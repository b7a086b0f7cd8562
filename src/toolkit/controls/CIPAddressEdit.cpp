#include "toolkit/controls/CIPAddressEdit.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpressionValidator>
#include <QStackedLayout>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <QToolTip>
#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int Parts = 4;
constexpr int MostDigits = 3;
constexpr int Largest = 255;

/// Numbers up to 255 with dots between them, without leading zeros; empty if it is anything else.
QStringList Numbers(const QString& sText)
{
    static const QRegularExpression s_objNumber(QRegularExpression::anchoredPattern(u"0*[0-9]{1,3}"_s));
    QStringList arNumbers = sText.trimmed().split(u'.');
    for (QString& sNumber : arNumbers) {
        if (!s_objNumber.match(sNumber).hasMatch() || sNumber.toInt() > Largest)
            return {};
        sNumber = QString::number(sNumber.toInt());
    }
    return arNumbers;
}

/// The four numbers of an address; empty if it is none.
QStringList Address(const QString& sText)
{
    QStringList arNumbers = Numbers(sText);
    const bool bZero = arNumbers.count(u"0"_s) == arNumbers.size();
    while (bZero && !arNumbers.isEmpty() && arNumbers.size() < Parts)
        arNumbers.append(u"0"_s);
    return arNumbers.size() == Parts ? arNumbers : QStringList();
}

} // namespace

CIPAddressEdit::CIPAddressEdit(QWidget* pParent)
    : QWidget(pParent), vm_pStack(new QStackedLayout(this)), vm_pOther(new QLineEdit)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_S_MakeParts();
    vm_pOther->setObjectName(u"Other"_s);
    vm_pOther->setReadOnly(true);
    vm_pOther->installEventFilter(this);
    vm_pStack->addWidget(vm_pOther);
    setFocusProxy(vm_arParts.first());
}

void CIPAddressEdit::m_S_MakeParts()
{
    auto* const pParts = new QWidget;
    auto* const pLine = new QHBoxLayout(pParts);
    const int nFrame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + 1; // some styles draw it a pixel further in
    pLine->setContentsMargins(nFrame, nFrame, nFrame, nFrame);
    pLine->setSpacing(0);
    auto* const pDigits = new QRegularExpressionValidator(QRegularExpression(u"[0-9]*"_s), this);
    for (int nPart = 0; nPart < Parts; ++nPart) {
        auto* const pPart = new QLineEdit;
        pPart->setObjectName(u"Part%1"_s.arg(nPart + 1));
        pPart->setFrame(false);
        pPart->setAlignment(Qt::AlignCenter);
        pPart->setMaxLength(MostDigits);
        pPart->setValidator(pDigits);
        pPart->setMinimumWidth(pPart->fontMetrics().horizontalAdvance(u"8888"_s));
        pPart->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored); // as high as any other edit
        pPart->setFocusPolicy(nPart == 0 ? Qt::StrongFocus : Qt::ClickFocus);
        pPart->setContextMenuPolicy(Qt::CustomContextMenu);
        pPart->installEventFilter(this);
        connect(pPart, &QLineEdit::textEdited, this, [this, nPart] { m_S_OnEdited(nPart); });
        connect(pPart, &QWidget::customContextMenuRequested, this,
                [this, nPart](const QPoint& ptPart) { m_S_ShowMenu(nPart, ptPart); });
        if (nPart > 0)
            pLine->addWidget(new QLabel(u"."_s));
        pLine->addWidget(pPart);
        vm_arParts.append(pPart);
    }
    vm_pStack->addWidget(pParts);
}

void CIPAddressEdit::setText(const QString& sText)
{
    vm_sCame = sText;
    const QStringList arParts = Address(sText);
    if (!arParts.isEmpty() || sText.trimmed().isEmpty()) {
        m_S_ShowParts(arParts);
    } else {
        vm_pOther->setText(sText);
        vm_pOther->home(false);
        vm_pStack->setCurrentWidget(vm_pOther);
        setFocusProxy(vm_pOther);
    }
    vm_bEdited = false;
}

void CIPAddressEdit::m_S_ShowParts(const QStringList& arParts)
{
    for (int nPart = 0; nPart < Parts; ++nPart)
        vm_arParts[nPart]->setText(arParts.value(nPart));
    vm_pStack->setCurrentIndex(0);
    setFocusProxy(vm_arParts.first());
}

QString CIPAddressEdit::text() const
{
    if (!vm_bEdited)
        return vm_sCame;
    QStringList arParts;
    for (const QLineEdit* const pPart : vm_arParts)
        arParts.append(QString::number(pPart->text().toInt()));
    const bool bEmpty = std::all_of(vm_arParts.begin(), vm_arParts.end(),
                                    [](const QLineEdit* pPart) { return pPart->text().isEmpty(); });
    return bEmpty ? QString() : arParts.join(u'.');
}

void CIPAddressEdit::selectAll()
{
    (vm_pStack->currentIndex() == 0 ? vm_arParts.first() : vm_pOther)->selectAll();
}

bool CIPAddressEdit::m_F_b_IsNone() const
{
    const QString sPlain = s_F_s_Plain(text().trimmed());
    return sPlain.isEmpty() || sPlain == "0.0.0.0"_L1;
}

QString CIPAddressEdit::s_F_s_Plain(const QString& sText)
{
    const QStringList arParts = Address(sText);
    return arParts.isEmpty() ? sText : arParts.join(u'.');
}

void CIPAddressEdit::m_S_Enter(int nPart, int nCursor)
{
    vm_arParts[nPart]->setFocus();
    vm_arParts[nPart]->deselect();
    vm_arParts[nPart]->setCursorPosition(nCursor);
}

void CIPAddressEdit::m_S_EnterSelected(int nPart)
{
    vm_arParts[nPart]->setFocus();
    vm_arParts[nPart]->selectAll();
}

void CIPAddressEdit::m_S_OnEdited(int nPart)
{
    vm_bEdited = true;
    QLineEdit* const pPart = vm_arParts[nPart];
    if (pPart->text().toInt() > Largest) {
        pPart->setText(QString::number(Largest));
        pPart->selectAll();
        QToolTip::showText(pPart->mapToGlobal(pPart->rect().bottomLeft()), u"0 ~ %1"_s.arg(Largest), pPart);
    } else if (pPart->text().size() == MostDigits && pPart->cursorPosition() == MostDigits && nPart + 1 < Parts) {
        m_S_EnterSelected(nPart + 1);
        vm_bPassed = true;
    }
}

// A paste by the mouse takes a whole address as one by the keys does.
void CIPAddressEdit::m_S_ShowMenu(int nPart, const QPoint& ptPart)
{
    QLineEdit* const pPart = vm_arParts[nPart];
    const std::unique_ptr<QMenu> pMenu(pPart->createStandardContextMenu());
    for (QAction* const pAction : pMenu->actions()) {
        if (!pAction->text().startsWith(QLineEdit::tr("&Paste"))) // it has no other name
            continue;
        pAction->disconnect(SIGNAL(triggered(bool)));
        connect(pAction, &QAction::triggered, this, [this, nPart, pPart] {
            if (!m_F_b_Paste(nPart))
                pPart->paste();
        });
    }
    pMenu->exec(pPart->mapToGlobal(ptPart));
}

/// False for a number, which goes into the part alone. What has no room, or is no address, goes nowhere.
bool CIPAddressEdit::m_F_b_Paste(int nPart)
{
    const QStringList arNumbers = Numbers(QGuiApplication::clipboard()->text());
    const int nNumbers = static_cast<int>(arNumbers.size());
    const int nFirst = nNumbers == Parts ? 0 : nPart;
    if (nNumbers == 1)
        return false;
    if (nNumbers == 0 || nFirst + nNumbers > Parts)
        return true;
    for (int nNumber = 0; nNumber < nNumbers; ++nNumber)
        vm_arParts[nFirst + nNumber]->setText(arNumbers[nNumber]);
    const int nLast = nFirst + nNumbers - 1;
    m_S_Enter(nLast, MostDigits);
    vm_bEdited = true;
    return true;
}

bool CIPAddressEdit::m_F_b_OtherKey(const QKeyEvent& objKey)
{
    const QString sKey = objKey.text();
    const bool bDigit = sKey.size() == 1 && sKey[0] >= u'0' && sKey[0] <= u'9';
    const bool bPaste = objKey.matches(QKeySequence::Paste) && !Address(QGuiApplication::clipboard()->text()).isEmpty();
    if (!bDigit && !bPaste && objKey.key() != Qt::Key_Delete && objKey.key() != Qt::Key_Backspace)
        return false;
    m_S_ShowParts({});
    vm_bEdited = true;
    m_S_Enter(0, 0);
    if (bPaste)
        m_F_b_Paste(0);
    else if (bDigit)
        vm_arParts.first()->insert(sKey);
    return true;
}

bool CIPAddressEdit::m_F_b_PartKey(int nPart, const QKeyEvent& objKey)
{
    const bool bPassed = std::exchange(vm_bPassed, false);
    if (objKey.matches(QKeySequence::Paste))
        return m_F_b_Paste(nPart);
    if (objKey.key() == Qt::Key_Backtab) // leaves the control, not only the part
        vm_arParts.first()->setFocus();
    if (objKey.text() == "."_L1) {
        if (!bPassed && !vm_arParts[nPart]->text().isEmpty() && nPart + 1 < Parts)
            m_S_EnterSelected(nPart + 1);
        return true;
    }
    return objKey.modifiers().testAnyFlags(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)
               ? false
               : m_F_b_Leave(nPart, objKey.key());
}

/// The keys that lead out of a part at its ends.
bool CIPAddressEdit::m_F_b_Leave(int nPart, int nKey)
{
    const QLineEdit* const pPart = vm_arParts[nPart];
    const bool bPlain = !pPart->hasSelectedText();
    const bool bAtStart = bPlain && pPart->cursorPosition() == 0 && nPart > 0;
    const bool bAtEnd = bPlain && pPart->cursorPosition() == pPart->text().size() && nPart + 1 < Parts;
    if (bAtStart && (nKey == Qt::Key_Left || nKey == Qt::Key_Backspace))
        m_S_Enter(nPart - 1, MostDigits);
    else if (bAtEnd && nKey == Qt::Key_Right)
        m_S_Enter(nPart + 1, 0);
    else if (bAtStart && nKey == Qt::Key_Home)
        m_S_Enter(0, 0);
    else if (bAtEnd && nKey == Qt::Key_End)
        m_S_Enter(Parts - 1, MostDigits);
    else
        return false;
    return true;
}

bool CIPAddressEdit::eventFilter(QObject* pObject, QEvent* pEvent)
{
    auto* const pEdit = static_cast<QLineEdit*>(pObject);
    const int nPart = static_cast<int>(vm_arParts.indexOf(pEdit));
    switch (pEvent->type()) {
    case QEvent::KeyPress: {
        const auto& objKey = *static_cast<QKeyEvent*>(pEvent);
        return nPart < 0 ? m_F_b_OtherKey(objKey) : m_F_b_PartKey(nPart, objKey);
    }
    case QEvent::MouseButtonPress:
        vm_bPassed = false;
        break;
    case QEvent::FocusOut:
        if (nPart >= 0 && !pEdit->text().isEmpty())
            pEdit->setText(QString::number(pEdit->text().toInt()));
        [[fallthrough]];
    case QEvent::FocusIn:
        update(); // the frame shows the focus
        break;
    default:
        break;
    }
    return QWidget::eventFilter(pObject, pEvent);
}

// The frame of an edit, around all parts.
void CIPAddressEdit::paintEvent(QPaintEvent*)
{
    if (vm_pStack->currentIndex() != 0)
        return;
    QStyleOptionFrame objOption;
    objOption.initFrom(this);
    objOption.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &objOption, this);
    objOption.state |= QStyle::State_Sunken;
    objOption.state.setFlag(QStyle::State_HasFocus, isAncestorOf(QApplication::focusWidget()));
    QStylePainter(this).drawPrimitive(QStyle::PE_PanelLineEdit, objOption);
}

void CIPAddressEdit::showEvent(QShowEvent* pEvent)
{
    QWidget::showEvent(pEvent);
    vm_pOther->setAccessibleName(accessibleName());
    for (int nPart = 0; nPart < Parts; ++nPart)
        vm_arParts[nPart]->setAccessibleName(u"%1 %2"_s.arg(accessibleName()).arg(nPart + 1));
}
