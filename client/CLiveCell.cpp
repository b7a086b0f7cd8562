#include "CLiveCell.h"

#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <cmath>

#include "CHostText.h"

namespace {

constexpr int CaptionPad = 6;
constexpr int MarkSize = 10;
constexpr QRgb g_nPictureGround = 0xff15181c; // pictures stand on near-black, whatever the desktop's colours are
constexpr QRgb g_nMessageText = 0xffe6e9ed;
constexpr QRgb g_nMessageHint = 0xffa4acb6;

// The picture's ground is dark under a light desktop, too, and marks on it take the colours for dark.
QPalette DarkPalette()
{
    return {QColor::fromRgb(g_nMessageText), QColor::fromRgb(g_nPictureGround)};
}

} // namespace

CLiveCell::CLiveCell(QWidget* pParent)
    : QWidget(pParent), vm_objDecoder([this] {
          if (!vm_bTakePosted.exchange(true))
              QMetaObject::invokeMethod(this, &CLiveCell::m_S_TakePicture, Qt::QueuedConnection);
      })
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_S_OnState();
}

CLiveCell::~CLiveCell()
{
    m_S_RequestStop();
    vm_objDecoder.m_S_Stop();
    vm_pChannel.reset(); // while this is still a whole cell
}

bool CLiveCell::m_F_b_Assign(CEnvObj* pEnv, const stDef_LiveSource& stSource, const stDef_NvrInit& stInit)
{
    m_S_Clear();
    vm_pChannel = std::make_unique<CLiveChannel>(pEnv, window(), stSource);
    connect(vm_pChannel.get(), &CLiveChannel::S_StateChanged, this, &CLiveCell::m_S_OnState);
    const bool bOpen = vm_pChannel->m_F_b_Open(stInit);
    m_S_OnState();
    return bOpen;
}

void CLiveCell::m_S_Clear()
{
    vm_objDecoder.m_S_Stop();
    vm_pChannel.reset();
    m_S_OnState();
}

void CLiveCell::m_S_Connect()
{
    if (!vm_pChannel || vm_pChannel->m_F_b_WantsPictures() || vm_pChannel->m_F_n_State() == emDef_LiveState::Unusable)
        return;
    const stDef_LiveSource& stSource = vm_pChannel->m_F_o_Source();
    m_S_TellSize();
    vm_objDecoder.m_S_SkipOld();
    vm_objDecoder.m_S_Start(stSource.nNvrID, stSource.nChannel, stSource.nStream);
    vm_pChannel->m_S_Connect();
}

void CLiveCell::m_S_RequestStop()
{
    vm_objDecoder.m_S_RequestStop();
    if (vm_pChannel)
        vm_pChannel->m_S_RequestStop();
}

void CLiveCell::m_S_Disconnect()
{
    vm_objDecoder.m_S_Stop();
    if (vm_pChannel)
        vm_pChannel->m_S_Disconnect();
}

void CLiveCell::m_S_Poll()
{
    if (!vm_pChannel)
        return;
    vm_pChannel->m_S_Poll();
    m_S_UpdateRate();
}

void CLiveCell::m_S_UpdateRate()
{
    const bool bLive = vm_pChannel && vm_pChannel->m_F_n_State() == emDef_LiveState::Live;
    const QString sRate = bLive ? Tr(emDef_Text::FramesPerSecond).arg(vm_pChannel->m_F_n_Rate(), 0, 'f', 1) : QString();
    if (sRate == vm_sRate)
        return;
    vm_sRate = sRate;
    update(0, 0, width(), m_F_n_CaptionHeight());
}

void CLiveCell::m_S_TakePicture()
{
    vm_bTakePosted = false;
    if (!vm_pChannel || !vm_pChannel->m_F_b_WantsPictures() || !vm_objDecoder.m_F_b_TakePicture(vm_stPicture))
        return;
    vm_pChannel->m_S_CountPicture();
    update(m_F_o_PictureArea());
}

void CLiveCell::m_S_OnState()
{
    if (!vm_pChannel || !vm_pChannel->m_F_b_WantsPictures() || vm_pChannel->m_F_n_Pictures() == 0)
        vm_stPicture.nSerial = 0;
    m_S_UpdateRate();
    setAccessibleName(vm_pChannel ? vm_pChannel->m_F_o_Source().sTitle : Tr(emDef_Text::EmptyCell));
    setAccessibleDescription(vm_pChannel ? CLiveState::s_F_s_Text(vm_pChannel->m_F_n_State())
                                         : Tr(emDef_Text::EmptyCellHint));
    update();
    Q_EMIT S_StateChanged();
}

int CLiveCell::m_F_n_CaptionHeight() const
{
    return fontMetrics().height() + 2 * CaptionPad;
}

QRect CLiveCell::m_F_o_PictureArea() const
{
    return rect().adjusted(1, m_F_n_CaptionHeight(), -1, -1);
}

void CLiveCell::m_S_TellSize()
{
    const QSizeF szPixels = QSizeF(m_F_o_PictureArea().size()) * devicePixelRatioF();
    vm_objDecoder.m_S_SetCellSize(int(std::floor(szPixels.width())), int(std::floor(szPixels.height())));
}

void CLiveCell::resizeEvent(QResizeEvent* pEvent)
{
    QWidget::resizeEvent(pEvent);
    m_S_TellSize();
}

void CLiveCell::focusInEvent(QFocusEvent* pEvent)
{
    QWidget::focusInEvent(pEvent);
    update();
}

void CLiveCell::focusOutEvent(QFocusEvent* pEvent)
{
    QWidget::focusOutEvent(pEvent);
    update();
}

QSize CLiveCell::sizeHint() const
{
    return {480, 270 + m_F_n_CaptionHeight()};
}

QSize CLiveCell::minimumSizeHint() const
{
    return {200, 110 + m_F_n_CaptionHeight()};
}

void CLiveCell::paintEvent(QPaintEvent*)
{
    QPainter objPainter(this);
    objPainter.fillRect(m_F_o_PictureArea(), QColor::fromRgb(g_nPictureGround));
    m_S_PaintCaption(objPainter);
    if (vm_stPicture.nSerial != 0)
        m_S_PaintPicture(objPainter);
    if (!vm_pChannel || vm_pChannel->m_F_n_State() != emDef_LiveState::Live || vm_stPicture.nSerial == 0)
        m_S_PaintMessage(objPainter);
    const qreal nFrame = hasFocus() ? 2 : 1;
    const QColor objFrame = palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid);
    objPainter.setBrush(Qt::NoBrush);
    objPainter.setPen(QPen(objFrame, nFrame, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    objPainter.drawRect(QRectF(rect()).adjusted(nFrame / 2, nFrame / 2, -nFrame / 2, -nFrame / 2));
}

void CLiveCell::m_S_PaintCaption(QPainter& objPainter) const
{
    const QRect rcCaption(0, 0, width(), m_F_n_CaptionHeight());
    objPainter.fillRect(rcCaption, palette().color(QPalette::Base));
    QRect rcText = rcCaption.adjusted(2 * CaptionPad, 0, -2 * CaptionPad, 0);
    const emDef_LiveState nState = vm_pChannel ? vm_pChannel->m_F_n_State() : emDef_LiveState::Idle;
    const QString sTitle = vm_pChannel ? vm_pChannel->m_F_o_Source().sTitle : Tr(emDef_Text::EmptyCell);
    if (vm_pChannel) {
        const QString sState = CLiveState::s_F_s_Text(nState);
        objPainter.setPen(palette().color(QPalette::Text));
        objPainter.drawText(rcText, Qt::AlignRight | Qt::AlignVCenter, sState);
        rcText.setWidth(rcText.width() - fontMetrics().horizontalAdvance(sState) - MarkSize - CaptionPad);
        const QRectF rcMark(rcText.x() + rcText.width(), (rcCaption.height() - MarkSize) / 2.0, MarkSize, MarkSize);
        CLiveState::s_S_DrawMark(objPainter, rcMark, nState, palette());
        rcText.setWidth(rcText.width() - 2 * CaptionPad);
        QColor objDim = palette().color(QPalette::Text);
        objDim.setAlphaF(0.7F);
        objPainter.setPen(objDim);
        objPainter.drawText(rcText, Qt::AlignRight | Qt::AlignVCenter, vm_sRate);
        rcText.setWidth(rcText.width() - fontMetrics().horizontalAdvance(vm_sRate) - 2 * CaptionPad);
    }
    QFont objBold = font();
    objBold.setBold(true);
    objPainter.setFont(objBold);
    objPainter.setPen(palette().color(vm_pChannel ? QPalette::Text : QPalette::PlaceholderText));
    objPainter.drawText(rcText, Qt::AlignLeft | Qt::AlignVCenter,
                        QFontMetrics(objBold).elidedText(sTitle, Qt::ElideRight, rcText.width()));
    objPainter.setFont(font());
}

void CLiveCell::m_S_PaintPicture(QPainter& objPainter) const
{
    const QImage objImage(reinterpret_cast<const uchar*>(vm_stPicture.arPixels.data()), vm_stPicture.nWidth,
                          vm_stPicture.nHeight, qsizetype(vm_stPicture.nStride) * 4, QImage::Format_RGB32);
    const QRect rcArea = m_F_o_PictureArea();
    const qreal nRatio = devicePixelRatioF();
    // Right after a resize the picture still has the old size: it is stretched until the next one comes.
    const QSizeF szImage = QSizeF(objImage.size()).scaled(QSizeF(rcArea.size()) * nRatio, Qt::KeepAspectRatio);
    const bool bFits =
        std::abs(szImage.width() - objImage.width()) < 2 && std::abs(szImage.height() - objImage.height()) < 2;
    const QSizeF szPaint = (bFits ? QSizeF(objImage.size()) : szImage) / nRatio;
    // On whole device pixels, so that no line of the picture is blurred over two.
    const auto Snap = [nRatio](qreal nValue) { return std::round(nValue * nRatio) / nRatio; };
    const QRectF rcPaint(Snap(rcArea.x() + (rcArea.width() - szPaint.width()) / 2),
                         Snap(rcArea.y() + (rcArea.height() - szPaint.height()) / 2), szPaint.width(),
                         szPaint.height());
    objPainter.setRenderHint(QPainter::SmoothPixmapTransform, !bFits);
    objPainter.drawImage(rcPaint, objImage);
}

void CLiveCell::m_S_PaintMessage(QPainter& objPainter) const
{
    const QRect rcArea = m_F_o_PictureArea();
    if (vm_stPicture.nSerial != 0)
        objPainter.fillRect(rcArea, QColor(0, 0, 0, 150));
    const emDef_LiveState nState = vm_pChannel ? vm_pChannel->m_F_n_State() : emDef_LiveState::Idle;
    const QString sHead = vm_pChannel ? CLiveState::s_F_s_Text(nState) : Tr(emDef_Text::EmptyCell);
    const QString sHint = vm_pChannel ? CLiveState::s_F_s_Hint(nState) : Tr(emDef_Text::EmptyCellHint);
    QFont objLarge = font();
    objLarge.setPointSizeF(font().pointSizeF() * 1.3);
    objLarge.setBold(true);
    const int nHead = QFontMetrics(objLarge).height();
    const int nHint = fontMetrics().height();
    const int nMark = vm_pChannel ? 2 * MarkSize : 0;
    int nTop = rcArea.center().y() - (nMark + nHead + nHint + 2 * CaptionPad) / 2;
    if (vm_pChannel) {
        const QRectF rcMark(rcArea.center().x() - nMark / 2.0, nTop, nMark, nMark);
        CLiveState::s_S_DrawMark(objPainter, rcMark, nState, DarkPalette());
    }
    nTop += nMark + CaptionPad;
    objPainter.setFont(objLarge);
    objPainter.setPen(QColor::fromRgb(g_nMessageText));
    objPainter.drawText(QRect(rcArea.x(), nTop, rcArea.width(), nHead), Qt::AlignCenter, sHead);
    nTop += nHead + CaptionPad;
    objPainter.setFont(font());
    objPainter.setPen(QColor::fromRgb(g_nMessageHint));
    objPainter.drawText(QRect(rcArea.x(), nTop, rcArea.width(), nHint), Qt::AlignCenter,
                        fontMetrics().elidedText(sHint, Qt::ElideRight, rcArea.width() - 4 * CaptionPad));
}
