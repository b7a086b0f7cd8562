#include "recorders/CRecorderTree.h"

#include <QContextMenuEvent>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextDocument>

#include "live/CChannelDrag.h"
#include "recorders/CCameraNames.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

enum emDef_Role
{
    RoleId = Qt::UserRole,
    RoleChannel, // -1 on a recorder
    RoleAddress,
    RoleState,
    RoleReach,
    RoleOwnText,
    RoleStateText,
    RoleChannels
};

constexpr int Pad = 6;
constexpr int MarkSize = 10;

struct stDef_ReachRow
{
    stDef_Text stText;
    emDef_LiveState nMark;
};

// In the order of emDef_Reach.
constexpr stDef_ReachRow g_astReaches[] = {
    {{"ReachUnknown", "Not checked yet"}, emDef_LiveState::Idle},
    {{"ReachThere", "Reachable"}, emDef_LiveState::Live},
    {{"ReachSilent", "Not responding"}, emDef_LiveState::NoAnswer},
    {nsHost::ReachAway, emDef_LiveState::NoAnswer},
};

quint64 StateKey(const stDef_ChannelKey& stKey)
{
    return (quint64(quint32(stKey.nNvrID)) << 32) | quint32(stKey.nChannel);
}

bool IsRecorder(const QTreeWidgetItem& objItem)
{
    return objItem.data(0, RoleChannel).toInt() < 0;
}

int RecorderOf(const QTreeWidgetItem* pItem)
{
    return pItem ? pItem->data(0, RoleId).toInt() : -1;
}

class CRowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& stOption, const QModelIndex& objIndex) const override
    {
        const int nLine = stOption.fontMetrics.height();
        return {0, objIndex.data(RoleChannel).toInt() < 0 ? 2 * nLine + 3 * Pad : nLine + 2 * Pad};
    }

    void paint(QPainter* pPainter, const QStyleOptionViewItem& stStyle, const QModelIndex& objIndex) const override
    {
        QStyleOptionViewItem stOption = stStyle;
        initStyleOption(&stOption, objIndex);
        const QString sName = stOption.text;
        stOption.text.clear();
        stOption.widget->style()->drawControl(QStyle::CE_ItemViewItem, &stOption, pPainter, stOption.widget);
        pPainter->save();
        const QRect rcRow = stOption.rect.adjusted(2, Pad, -Pad - 2, -Pad);
        const int nLine = stOption.fontMetrics.height();
        const QRect rcUpper(rcRow.x(), rcRow.y(), rcRow.width(), nLine);
        if (objIndex.data(RoleChannel).toInt() < 0) {
            PaintName(*pPainter, stOption, sName, rcUpper);
            PaintLine(*pPainter, stOption, objIndex.data(RoleAddress).toString(), rcUpper.translated(0, nLine + Pad),
                      objIndex, 0.75F);
        } else {
            PaintLine(*pPainter, stOption, sName, rcUpper, objIndex, 1.0F);
        }
        pPainter->restore();
    }

private:
    static QColor TextColour(const QStyleOptionViewItem& stOption)
    {
        const bool bActive = stOption.state & QStyle::State_Active;
        const bool bPicked = stOption.state & QStyle::State_Selected;
        return stOption.palette.color(bActive ? QPalette::Active : QPalette::Inactive,
                                      bPicked ? QPalette::HighlightedText : QPalette::Text);
    }

    static void PaintName(QPainter& objPainter, const QStyleOptionViewItem& stOption, const QString& sName,
                          const QRect& rcLine)
    {
        QFont objBold = stOption.font;
        objBold.setBold(true);
        objPainter.setFont(objBold);
        objPainter.setPen(TextColour(stOption));
        objPainter.drawText(rcLine, Qt::AlignLeft | Qt::AlignVCenter,
                            QFontMetrics(objBold).elidedText(sName, Qt::ElideRight, rcLine.width()));
        objPainter.setFont(stOption.font);
    }

    // A text at the left, mark and word of the state at the right.
    static void PaintLine(QPainter& objPainter, const QStyleOptionViewItem& stOption, const QString& sText,
                          const QRect& rcLine, const QModelIndex& objIndex, float nStrength)
    {
        QColor objColour = TextColour(stOption);
        objPainter.setPen(objColour);
        const QString sState = stOption.fontMetrics.elidedText(objIndex.data(RoleStateText).toString(), Qt::ElideRight,
                                                               rcLine.width() / 2);
        const int nState = stOption.fontMetrics.horizontalAdvance(sState);
        objPainter.drawText(rcLine, Qt::AlignRight | Qt::AlignVCenter, sState);
        const QRectF rcMark(rcLine.x() + rcLine.width() - nState - MarkSize - 8,
                            rcLine.y() + (rcLine.height() - MarkSize) / 2.0, MarkSize, MarkSize);
        PaintMark(objPainter, rcMark, stOption, objIndex);
        objColour.setAlphaF(nStrength);
        objPainter.setPen(objColour);
        const int nText = int(rcMark.x()) - rcLine.x() - Pad;
        objPainter.drawText(QRect(rcLine.x(), rcLine.y(), nText, rcLine.height()), Qt::AlignLeft | Qt::AlignVCenter,
                            stOption.fontMetrics.elidedText(sText, Qt::ElideMiddle, nText));
    }

    // On the highlight of a picked row the mark stands on a plate of the base colour, or it would drown.
    static void PaintMark(QPainter& objPainter, const QRectF& rcMark, const QStyleOptionViewItem& stOption,
                          const QModelIndex& objIndex)
    {
        if (stOption.state & QStyle::State_Selected) {
            objPainter.setRenderHint(QPainter::Antialiasing);
            objPainter.setPen(Qt::NoPen);
            objPainter.setBrush(stOption.palette.color(QPalette::Base));
            objPainter.drawEllipse(rcMark.adjusted(-3, -3, 3, 3));
        }
        CLiveState::s_S_DrawMark(objPainter, rcMark, emDef_LiveState(objIndex.data(RoleState).toInt()),
                                 stOption.palette);
    }
};

} // namespace

CRecorderTree::CRecorderTree(CCameraNames* pNames, QWidget* pParent) : QTreeWidget(pParent), vm_pNames(pNames)
{
    setObjectName(u"Recorders"_s);
    setItemDelegate(new CRowDelegate(this));
    setHeaderHidden(true);
    setColumnCount(1);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setExpandsOnDoubleClick(false);
    setEditTriggers(NoEditTriggers);
    setIndentation(18);
    setMinimumWidth(200);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    m_S_Retranslate();
    connect(pNames, &CCameraNames::S_Changed, this, [this](int nNvrID) { m_S_DressAll(vm_mapRows.value(nNvrID)); });
    connect(this, &QTreeWidget::itemExpanded, this, &CRecorderTree::m_S_FillChannels);
    connect(this, &QTreeWidget::itemDoubleClicked, this, &CRecorderTree::m_S_Activate);
    connect(this, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem* pItem) { Q_EMIT S_CurrentChanged(RecorderOf(pItem)); });
}

QTreeWidgetItem* CRecorderTree::m_F_p_MakeRow(const stDef_Recorder& stRecorder)
{
    auto* const pRow = new QTreeWidgetItem({stRecorder.sName});
    pRow->setData(0, RoleId, stRecorder.nNvrID);
    pRow->setData(0, RoleChannel, -1);
    pRow->setData(0, RoleAddress, stRecorder.sAddress);
    pRow->setData(0, RoleChannels, stRecorder.nChannels);
    pRow->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return pRow;
}

void CRecorderTree::m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders)
{
    const stDef_ChannelKey stPicked{m_F_n_CurrentRecorder(),
                                    currentItem() ? currentItem()->data(0, RoleChannel).toInt() : -1};
    const QHash<int, QTreeWidgetItem*> mapOld = std::exchange(vm_mapRows, {});
    const QSignalBlocker objQuiet(this);
    QList<QTreeWidgetItem*> arRows;
    QList<int> arOpen;
    for (const stDef_Recorder& stRecorder : arRecorders) {
        QTreeWidgetItem* const pRow = m_F_p_MakeRow(stRecorder);
        if (const QTreeWidgetItem* const pOld = mapOld.value(stRecorder.nNvrID)) {
            pRow->setData(0, RoleReach, pOld->data(0, RoleReach));
            pRow->setData(0, RoleOwnText, pOld->data(0, RoleOwnText));
            if (pOld->isExpanded())
                arOpen.append(stRecorder.nNvrID);
        }
        m_S_Dress(*pRow);
        vm_mapRows.insert(stRecorder.nNvrID, pRow);
        arRows.append(pRow);
    }
    // A number may come again for another recorder, which begins without a past.
    erase_if(vm_mapStates, [this](const auto& stState) { return !vm_mapRows.contains(int(stState.key() >> 32)); });
    const int nScroll = verticalScrollBar()->value();
    clear();
    addTopLevelItems(arRows);
    for (const int nNvrID : arOpen) {
        m_S_FillChannels(vm_mapRows[nNvrID]);
        vm_mapRows[nNvrID]->setExpanded(true);
    }
    m_S_SetFilter(vm_sFilter);
    QTreeWidgetItem* pPicked = vm_mapRows.value(stPicked.nNvrID, topLevelItem(0));
    if (pPicked && stPicked.nChannel >= 0 && stPicked.nChannel < pPicked->childCount())
        pPicked = pPicked->child(stPicked.nChannel);
    setCurrentItem(pPicked);
    verticalScrollBar()->setValue(nScroll);
    viewport()->update();
}

void CRecorderTree::m_S_FillChannels(QTreeWidgetItem* pRow)
{
    if (!IsRecorder(*pRow) || pRow->childCount() > 0)
        return;
    const int nNvrID = RecorderOf(pRow);
    QList<QTreeWidgetItem*> arChannels;
    for (int nChannel = 0; nChannel < pRow->data(0, RoleChannels).toInt(); ++nChannel) {
        auto* const pItem = new QTreeWidgetItem;
        pItem->setData(0, RoleId, nNvrID);
        pItem->setData(0, RoleChannel, nChannel);
        pItem->setData(0, RoleState, int(vm_mapStates.value(StateKey({nNvrID, nChannel}), emDef_LiveState::Idle)));
        pItem->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicator);
        arChannels.append(pItem);
    }
    pRow->addChildren(arChannels);
    for (QTreeWidgetItem* const pItem : arChannels)
        m_S_Dress(*pItem);
}

// Mark, word and accessible text of a row from what it knows.
void CRecorderTree::m_S_Dress(QTreeWidgetItem& objItem)
{
    const auto nState = emDef_LiveState(objItem.data(0, RoleState).toInt());
    QString sState = CLiveState::s_F_s_Text(nState);
    QStringList arParts;
    if (IsRecorder(objItem)) {
        const stDef_ReachRow& stReach = g_astReaches[objItem.data(0, RoleReach).toInt()];
        const QString sOwn = objItem.data(0, RoleOwnText).toString();
        sState = sOwn.isEmpty() ? Tr(stReach.stText) : sOwn;
        objItem.setData(0, RoleState, int(stReach.nMark));
        arParts = {objItem.text(0), objItem.data(0, RoleAddress).toString(),
                   Tr(nsHost::TreeChannels).arg(objItem.data(0, RoleChannels).toInt()), sState};
    } else {
        objItem.setText(0, vm_pNames->m_F_s_Label({RecorderOf(&objItem), objItem.data(0, RoleChannel).toInt()}));
        arParts = {objItem.parent()->text(0), objItem.text(0), sState};
    }
    objItem.setData(0, RoleStateText, sState);
    objItem.setData(0, Qt::AccessibleTextRole, arParts.join(u", "_s));
    objItem.setToolTip(0, Qt::convertFromPlainText(arParts.join(u'\n')));
}

void CRecorderTree::m_S_DressAll(QTreeWidgetItem* pRow)
{
    if (!pRow)
        return;
    m_S_Dress(*pRow);
    for (int i = 0; i < pRow->childCount(); ++i)
        m_S_Dress(*pRow->child(i));
}

void CRecorderTree::m_S_SetRecorderState(int nNvrID, emDef_Reach nReach, const QString& sText)
{
    QTreeWidgetItem* const pRow = vm_mapRows.value(nNvrID);
    if (!pRow || (pRow->data(0, RoleReach).toInt() == int(nReach) && pRow->data(0, RoleOwnText).toString() == sText))
        return;
    pRow->setData(0, RoleReach, int(nReach));
    pRow->setData(0, RoleOwnText, sText);
    m_S_Dress(*pRow);
}

void CRecorderTree::m_S_SetChannelState(const stDef_ChannelKey& stKey, emDef_LiveState nState)
{
    if (nState == emDef_LiveState::Idle)
        vm_mapStates.remove(StateKey(stKey));
    else
        vm_mapStates[StateKey(stKey)] = nState;
    QTreeWidgetItem* const pRow = vm_mapRows.value(stKey.nNvrID);
    QTreeWidgetItem* const pItem = pRow ? pRow->child(stKey.nChannel) : nullptr;
    if (!pItem || pItem->data(0, RoleState).toInt() == int(nState))
        return;
    pItem->setData(0, RoleState, int(nState));
    m_S_Dress(*pItem);
}

void CRecorderTree::m_S_SetFilter(const QString& sFilter)
{
    vm_sFilter = sFilter.trimmed();
    for (QTreeWidgetItem* const pRow : std::as_const(vm_mapRows))
        pRow->setHidden(!pRow->text(0).contains(vm_sFilter, Qt::CaseInsensitive) &&
                        !pRow->data(0, RoleAddress).toString().contains(vm_sFilter, Qt::CaseInsensitive));
    viewport()->update();
}

int CRecorderTree::m_F_n_CurrentRecorder() const
{
    return RecorderOf(currentItem());
}

void CRecorderTree::m_S_Select(int nNvrID)
{
    if (QTreeWidgetItem* const pRow = vm_mapRows.value(nNvrID)) {
        setCurrentItem(pRow);
        scrollToItem(pRow);
    }
}

QPoint CRecorderTree::m_F_o_MenuPoint() const
{
    if (!isVisible() || !currentItem())
        return QCursor::pos();
    return viewport()->mapToGlobal(visualItemRect(currentItem()).center());
}

QSize CRecorderTree::sizeHint() const
{
    return {280, 400};
}

void CRecorderTree::m_S_Activate(const QTreeWidgetItem* pItem)
{
    if (!pItem)
        return;
    if (IsRecorder(*pItem))
        Q_EMIT S_ShowRecorder(RecorderOf(pItem));
    else
        Q_EMIT S_PlaceChannel({RecorderOf(pItem), pItem->data(0, RoleChannel).toInt()});
}

// The page keys are also the window's, for pages of the grid; a long list needs them itself.
bool CRecorderTree::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const auto* const pKey = static_cast<QKeyEvent*>(pEvent);
        const bool bPage = pKey->key() == Qt::Key_PageUp || pKey->key() == Qt::Key_PageDown;
        if (bPage && (pKey->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
            pEvent->accept();
            return true;
        }
    }
    return QTreeWidget::event(pEvent);
}

void CRecorderTree::keyPressEvent(QKeyEvent* pEvent)
{
    const int nNvrID = m_F_n_CurrentRecorder();
    const bool bPlain = (pEvent->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (bPlain && nNvrID >= 0 && pEvent->key() == Qt::Key_F2)
        Q_EMIT S_Edit(nNvrID);
    else if (bPlain && nNvrID >= 0 && pEvent->key() == Qt::Key_Delete)
        Q_EMIT S_Remove(nNvrID);
    else if (bPlain && (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter))
        m_S_Activate(currentItem());
    else
        QTreeWidget::keyPressEvent(pEvent);
}

void CRecorderTree::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const bool bKeys = pEvent->reason() == QContextMenuEvent::Keyboard;
    const QTreeWidgetItem* const pItem = bKeys ? currentItem() : itemAt(viewport()->mapFromGlobal(pEvent->globalPos()));
    Q_EMIT S_MenuRequested(RecorderOf(pItem), bKeys ? m_F_o_MenuPoint() : pEvent->globalPos());
    pEvent->accept();
}

QStringList CRecorderTree::mimeTypes() const
{
    return {QString::fromLatin1(CChannelDrag::MimeType)};
}

QMimeData* CRecorderTree::mimeData(const QList<QTreeWidgetItem*>& arItems) const
{
    QList<stDef_ChannelKey> arKeys;
    for (const QTreeWidgetItem* const pItem : arItems) {
        const bool bAll = IsRecorder(*pItem);
        const int nFirst = bAll ? 0 : pItem->data(0, RoleChannel).toInt();
        const int nEnd = bAll ? pItem->data(0, RoleChannels).toInt() : nFirst + 1;
        for (int nChannel = nFirst; nChannel < nEnd; ++nChannel)
            arKeys.append({RecorderOf(pItem), nChannel});
    }
    return CChannelDrag::s_F_p_Make(arKeys);
}

void CRecorderTree::startDrag(Qt::DropActions)
{
    if (!currentItem())
        return;
    const QTreeWidgetItem& objItem = *currentItem();
    const QString sText =
        IsRecorder(objItem) ? objItem.text(0) : u"%1 \u2013 %2"_s.arg(objItem.parent()->text(0), objItem.text(0));
    const QString sShown = fontMetrics().elidedText(sText, Qt::ElideMiddle, 260);
    const QSize szTag(fontMetrics().horizontalAdvance(sShown) + 24, fontMetrics().height() + 12);
    QPixmap objTag(szTag * devicePixelRatioF());
    objTag.setDevicePixelRatio(devicePixelRatioF());
    objTag.fill(Qt::transparent);
    QPainter objPainter(&objTag);
    objPainter.setRenderHint(QPainter::Antialiasing);
    objPainter.setPen(Qt::NoPen);
    objPainter.setBrush(palette().color(QPalette::Highlight));
    objPainter.drawRoundedRect(QRect({}, szTag), 6, 6);
    objPainter.setPen(palette().color(QPalette::HighlightedText));
    objPainter.setFont(font());
    objPainter.drawText(QRect({}, szTag), Qt::AlignCenter, sShown);
    objPainter.end();
    auto* const pDrag = new QDrag(this);
    pDrag->setMimeData(mimeData({currentItem()}));
    pDrag->setPixmap(objTag);
    pDrag->setHotSpot({12, szTag.height() / 2});
    pDrag->exec(Qt::CopyAction);
}

void CRecorderTree::paintEvent(QPaintEvent* pEvent)
{
    QTreeWidget::paintEvent(pEvent);
    const bool bShown = std::any_of(vm_mapRows.begin(), vm_mapRows.end(),
                                    [](const QTreeWidgetItem* pRow) { return !pRow->isHidden(); });
    if (bShown)
        return;
    QPainter objPainter(viewport());
    objPainter.setPen(CLiveState::s_F_o_Quiet(palette().color(QPalette::Text)));
    objPainter.drawText(viewport()->rect().adjusted(16, 16, -16, -16),
                        Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                        Tr(vm_mapRows.isEmpty() ? nsHost::TreeEmpty : nsHost::TreeNoMatch));
}

void CRecorderTree::changeEvent(QEvent* pEvent)
{
    QTreeWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
}

void CRecorderTree::m_S_Retranslate()
{
    setAccessibleName(Tr(nsHost::Recorders));
    for (QTreeWidgetItem* const pRow : std::as_const(vm_mapRows))
        m_S_DressAll(pRow);
    viewport()->update();
}
