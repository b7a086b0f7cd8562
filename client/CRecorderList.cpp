#include "CRecorderList.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include "CHostText.h"

using namespace Qt::StringLiterals;

namespace {

enum emDef_Role
{
    RoleId = Qt::UserRole,
    RoleAddress,
    RoleState,
    RoleStateText
};

constexpr int Pad = 8;
constexpr int MarkSize = 10;

class CRecorderDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& stOption, const QModelIndex&) const override
    {
        return {0, 2 * stOption.fontMetrics.height() + 3 * Pad};
    }

    void paint(QPainter* pPainter, const QStyleOptionViewItem& stStyle, const QModelIndex& objIndex) const override
    {
        QStyleOptionViewItem stOption = stStyle;
        initStyleOption(&stOption, objIndex);
        const QString sName = stOption.text;
        stOption.text.clear();
        stOption.widget->style()->drawControl(QStyle::CE_ItemViewItem, &stOption, pPainter, stOption.widget);
        pPainter->save();
        PaintTexts(*pPainter, stOption, sName, objIndex);
        pPainter->restore();
    }

private:
    static void PaintTexts(QPainter& objPainter, const QStyleOptionViewItem& stOption, const QString& sName,
                           const QModelIndex& objIndex)
    {
        const bool bPicked = stOption.state & QStyle::State_Selected;
        const bool bActive = stOption.state & QStyle::State_Active;
        const QPalette::ColorGroup nGroup = bActive ? QPalette::Active : QPalette::Inactive;
        const QColor objText = stOption.palette.color(nGroup, bPicked ? QPalette::HighlightedText : QPalette::Text);
        QColor objDim = objText;
        objDim.setAlphaF(0.75F);
        const QRect rcRow = stOption.rect.adjusted(Pad + 4, Pad, -Pad, -Pad);
        const QRect rcUpper(rcRow.x(), rcRow.y(), rcRow.width(), stOption.fontMetrics.height());
        const QRect rcLower = rcUpper.translated(0, rcUpper.height() + Pad);

        QFont objBold = stOption.font;
        objBold.setBold(true);
        objPainter.setFont(objBold);
        objPainter.setPen(objText);
        objPainter.drawText(rcUpper, Qt::AlignLeft | Qt::AlignVCenter,
                            QFontMetrics(objBold).elidedText(sName, Qt::ElideRight, rcUpper.width()));

        objPainter.setFont(stOption.font);
        const QString sState = objIndex.data(RoleStateText).toString();
        const int nState = stOption.fontMetrics.horizontalAdvance(sState);
        objPainter.drawText(rcLower, Qt::AlignRight | Qt::AlignVCenter, sState);
        const QRectF rcMark(rcLower.x() + rcLower.width() - nState - MarkSize - 8,
                            rcLower.y() + (rcLower.height() - MarkSize) / 2.0, MarkSize, MarkSize);
        PaintMark(objPainter, rcMark, stOption.palette, bPicked, objIndex);

        objPainter.setPen(objDim);
        const int nAddress = int(rcMark.x()) - rcLower.x() - Pad;
        objPainter.drawText(
            QRect(rcLower.x(), rcLower.y(), nAddress, rcLower.height()), Qt::AlignLeft | Qt::AlignVCenter,
            stOption.fontMetrics.elidedText(objIndex.data(RoleAddress).toString(), Qt::ElideMiddle, nAddress));
    }

    // On the highlight of a picked row the mark stands on a plate of the base colour, or it would drown.
    static void PaintMark(QPainter& objPainter, const QRectF& rcMark, const QPalette& objPalette, bool bPicked,
                          const QModelIndex& objIndex)
    {
        if (bPicked) {
            objPainter.setRenderHint(QPainter::Antialiasing);
            objPainter.setPen(Qt::NoPen);
            objPainter.setBrush(objPalette.color(QPalette::Base));
            objPainter.drawEllipse(rcMark.adjusted(-3, -3, 3, 3));
            objPainter.setPen(objPalette.color(QPalette::HighlightedText));
        }
        CLiveState::s_S_DrawMark(objPainter, rcMark, emDef_LiveState(objIndex.data(RoleState).toInt()), objPalette);
    }
};

void SetState(QListWidgetItem& objItem, emDef_LiveState nState, const QString& sText)
{
    objItem.setData(RoleState, static_cast<int>(nState));
    objItem.setData(RoleStateText, sText);
    const QString sAddress = objItem.data(RoleAddress).toString();
    objItem.setData(Qt::AccessibleTextRole, u"%1, %2, %3"_s.arg(objItem.text(), sAddress, sText));
    objItem.setToolTip(u"%1\n%2\n%3"_s.arg(objItem.text(), sAddress, sText));
}

} // namespace

CRecorderList::CRecorderList(QWidget* pParent) : QListWidget(pParent)
{
    setObjectName(u"Recorders"_s);
    setAccessibleName(Tr(emDef_Text::Recorders));
    setItemDelegate(new CRecorderDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumWidth(200);
    connect(this, &QListWidget::currentRowChanged, this, [this] {
        if (currentItem())
            Q_EMIT S_Picked(m_F_n_Current());
    });
}

void CRecorderList::m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders)
{
    clear();
    for (const stDef_Recorder& stRecorder : arRecorders) {
        auto* const pItem = new QListWidgetItem(stRecorder.sName);
        pItem->setData(RoleId, stRecorder.nNvrID);
        pItem->setData(RoleAddress, stRecorder.sAddress);
        SetState(*pItem, emDef_LiveState::Idle, CLiveState::s_F_s_Text(emDef_LiveState::Idle));
        addItem(pItem);
    }
    setCurrentRow(arRecorders.isEmpty() ? -1 : 0);
}

void CRecorderList::m_S_SetState(int nNvrID, emDef_LiveState nState, const QString& sText)
{
    for (int i = 0; i < count(); ++i) {
        QListWidgetItem& objItem = *item(i);
        const bool bSame = objItem.data(RoleState).toInt() == static_cast<int>(nState) &&
                           objItem.data(RoleStateText).toString() == sText;
        if (objItem.data(RoleId).toInt() == nNvrID && !bSame)
            SetState(objItem, nState, sText);
    }
}

int CRecorderList::m_F_n_Current() const
{
    return currentItem() ? currentItem()->data(RoleId).toInt() : -1;
}

QSize CRecorderList::sizeHint() const
{
    return {280, 400};
}

void CRecorderList::paintEvent(QPaintEvent* pEvent)
{
    QListWidget::paintEvent(pEvent);
    if (count() > 0)
        return;
    QPainter objPainter(viewport());
    objPainter.setPen(palette().color(QPalette::PlaceholderText));
    objPainter.drawText(viewport()->rect().adjusted(2 * Pad, 2 * Pad, -2 * Pad, -2 * Pad),
                        Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, Tr(emDef_Text::NoRecorders));
}
