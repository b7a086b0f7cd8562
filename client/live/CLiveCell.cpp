#include "live/CLiveCell.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "fleetlink/fleetlink.h"
#include "live/CChannelDrag.h"
#include "recorders/CRecorderStore.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int CaptionPad = 6;
constexpr int MarkSize = 10;
constexpr int HatchStep = 28;
constexpr int DragWidth = 200;
constexpr qreal SecondBelowWidth = 360; // device pixels of the picture
constexpr qreal MainFromWidth = 420;
constexpr std::int64_t SizeSettledMs = 500;
constexpr std::int64_t KeepPictureMs = 2000;
constexpr std::int64_t SnapshotLimitMs = 2000;
constexpr QRgb g_nPictureGround = 0xff15181c; // pictures stand on near-black, whatever the desktop's colours are
constexpr QRgb g_nMessageText = 0xffe6e9ed;
constexpr QRgb g_nMessageHint = 0xffa4acb6;

// The picture's ground is dark under a light desktop, too, and marks on it take the colours for dark.
QPalette DarkPalette()
{
    return {QColor::fromRgb(g_nMessageText), QColor::fromRgb(g_nPictureGround)};
}

std::int64_t NowMs()
{
    return static_cast<std::int64_t>(CRtspClient::s_F_n_NowMs());
}

// Only as long as the picture is there: no pixel is copied.
QImage ImageOf(const stDef_Picture& stPicture)
{
    return {reinterpret_cast<const uchar*>(stPicture.arPixels.data()), stPicture.nWidth, stPicture.nHeight,
            qsizetype(stPicture.nStride) * 4, QImage::Format_RGB32};
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
    setAcceptDrops(true);
    m_S_OnState();
}

CLiveCell::~CLiveCell()
{
    m_S_RequestStop();
    vm_objDecoder.m_S_Stop();
    vm_pChannel.reset(); // while this is still a whole cell
}

bool CLiveCell::m_F_b_Assign(CEnvObj* pEnv, const CRecorderStore* pStore, const stDef_ChannelKey& stKey,
                             const QString& sTitle)
{
    m_S_Clear();
    vm_pEnv = pEnv;
    vm_pStore = pStore;
    vm_stKey = stKey;
    vm_sTitle = sTitle;
    return m_F_b_OpenStream(m_F_n_FittingStream());
}

bool CLiveCell::m_F_b_OpenStream(int nStream)
{
    vm_pChannel = std::make_unique<CLiveChannel>(
        vm_pEnv, window(), stDef_LiveSource{vm_stKey.nNvrID, vm_stKey.nChannel, nStream, vm_sTitle});
    connect(vm_pChannel.get(), &CLiveChannel::S_StateChanged, this, &CLiveCell::m_S_OnState);
    stDef_NvrInit stInit = vm_pStore->m_F_o_InitRecord(vm_stKey.nNvrID);
    stInit.bDips = false; // the look-up is over, or the window would wait for another one
    const bool bOpen = vm_pChannel->m_F_b_Open(stInit);
    vm_nMisfitSinceMs = 0;
    m_S_OnState();
    return bOpen;
}

void CLiveCell::m_S_Announce(const stDef_ChannelKey& stKey, const QString& sTitle)
{
    m_S_Clear();
    vm_stKey = stKey;
    vm_sTitle = sTitle;
    m_S_OnState();
}

void CLiveCell::m_S_Clear()
{
    vm_objDecoder.m_S_Stop();
    vm_pChannel.reset();
    vm_stKey = {};
    vm_sTitle.clear();
    vm_bWanted = false;
    vm_nKeepUntilMs = 0;
    m_S_OnState();
}

void CLiveCell::m_S_SetTitle(const QString& sTitle)
{
    vm_sTitle = sTitle;
    m_S_OnState();
}

emDef_LiveState CLiveCell::m_F_n_State() const
{
    if (vm_pChannel)
        return vm_pChannel->m_F_n_State();
    return vm_stKey.nNvrID < 0 ? emDef_LiveState::Idle : emDef_LiveState::Connecting;
}

void CLiveCell::m_S_Connect()
{
    if (!vm_pChannel || m_F_n_State() == emDef_LiveState::Unusable)
        return;
    if (vm_pChannel->m_F_b_WantsPictures()) // it is under way
        return;
    vm_bWanted = true;
    m_S_StartDecoder();
    vm_pChannel->m_S_Connect();
}

void CLiveCell::m_S_StartDecoder()
{
    const stDef_LiveSource& stSource = vm_pChannel->m_F_o_Source();
    m_S_TellSize();
    vm_objDecoder.m_S_SkipOld();
    vm_objDecoder.m_S_Start(stSource.nNvrID, stSource.nChannel, stSource.nStream,
                            vm_pEnv->m_F_s_Instance().toStdString());
}

void CLiveCell::m_S_RetryNow()
{
    if (vm_pChannel)
        vm_pChannel->m_S_RetryNow();
}

void CLiveCell::m_S_RequestStop()
{
    vm_bWanted = false;
    vm_bChanging = false;
    vm_nKeepUntilMs = 0;
    vm_objDecoder.m_S_RequestStop();
    if (vm_pChannel)
        vm_pChannel->m_S_RequestStop();
}

void CLiveCell::m_S_Disconnect()
{
    vm_bWanted = false;
    vm_objDecoder.m_S_Stop();
    if (vm_pChannel)
        vm_pChannel->m_S_Disconnect();
}

void CLiveCell::m_S_Poll()
{
    if (vm_nSnapshotUntilMs != 0 && NowMs() >= vm_nSnapshotUntilMs) {
        vm_nSnapshotUntilMs = 0;
        Q_EMIT S_Snapshot({});
    }
    if (!vm_pChannel)
        return;
    vm_pChannel->m_S_SetLack(vm_objDecoder.m_F_n_Lack());
    vm_pChannel->m_S_Poll();
    if (vm_nKeepUntilMs != 0 && NowMs() >= vm_nKeepUntilMs) {
        vm_nKeepUntilMs = 0;
        m_S_OnState();
    }
    m_S_FollowSize();
    m_S_UpdateTexts();
}

int CLiveCell::m_F_n_FittingStream() const
{
    if (!isVisible())
        return 0;
    const bool bSecond = vm_pChannel && vm_pChannel->m_F_o_Source().nStream != 0;
    const qreal nWidth = m_F_o_PictureArea().width() * devicePixelRatioF();
    return nWidth < (bSecond ? MainFromWidth : SecondBelowWidth) ? 1 : 0;
}

// Another stream is another connection: the picture of the old one stands in until the new one has its first.
void CLiveCell::m_S_FollowSize()
{
    const bool bMisfit = isVisible() && m_F_n_FittingStream() != vm_pChannel->m_F_o_Source().nStream;
    if (!vm_bWanted || (!bMisfit && !vm_bChanging)) {
        vm_nMisfitSinceMs = 0;
        vm_bChanging = false;
        return;
    }
    if (vm_nMisfitSinceMs == 0)
        vm_nMisfitSinceMs = NowMs();
    if (NowMs() - vm_nMisfitSinceMs < SizeSettledMs)
        return;
    if (!vm_bChanging) { // told now, gone by the next poll: many cells change at once without a wait for each
        vm_nKeepUntilMs = m_F_n_State() == emDef_LiveState::Live ? NowMs() + KeepPictureMs : 0;
        vm_bChanging = true;
        vm_objDecoder.m_S_RequestStop();
        vm_pChannel->m_S_RequestStop();
        return;
    }
    vm_bChanging = false;
    const int nStream = m_F_n_FittingStream();
    vm_objDecoder.m_S_Stop();
    if (m_F_b_OpenStream(nStream)) {
        m_S_StartDecoder();
        vm_pChannel->m_S_Connect();
    }
}

bool CLiveCell::m_F_b_KeepsPicture() const
{
    // Idle: the new stream is being made.
    return vm_nKeepUntilMs != 0 && vm_pChannel &&
           (vm_bChanging || m_F_n_State() == emDef_LiveState::Idle || vm_pChannel->m_F_b_WantsPictures());
}

void CLiveCell::m_S_SetCurrent(bool bCurrent)
{
    vm_bCurrent = bCurrent;
    update();
}

void CLiveCell::m_S_Snapshot()
{
    // The decoder still has the last picture of a stream that is gone, which is no picture of now.
    if (vm_stPicture.nSerial == 0)
        return Q_EMIT S_Snapshot({});
    vm_nSnapshotUntilMs = NowMs() + SnapshotLimitMs;
    vm_objDecoder.m_S_RequestSnapshot();
}

// What changes from poll to poll: the rate, the age of a picture that stands still, the seconds to the next try.
void CLiveCell::m_S_UpdateTexts()
{
    const bool bLive = m_F_n_State() == emDef_LiveState::Live;
    const QString sRate = bLive ? Tr(nsHost::FramesPerSecond).arg(vm_pChannel->m_F_n_Rate(), 0, 'f', 1) : QString();
    if (sRate != vm_sRate) {
        vm_sRate = sRate;
        update(0, 0, width(), m_F_n_CaptionHeight());
    }
    const QString sHint = m_F_s_Hint();
    if (sHint != vm_sShownHint) {
        vm_sShownHint = sHint;
        setAccessibleDescription(m_F_s_Description());
        update();
    }
}

QString CLiveCell::m_F_s_Hint() const
{
    if (vm_stKey.nNvrID < 0)
        return Tr(nsHost::EmptyCellHint);
    if (m_F_n_State() == emDef_LiveState::Stalled)
        return Tr(nsHost::PictureAge).arg(vm_pChannel->m_F_n_PictureAgeMs() / 1000);
    const QString sHint = CLiveState::s_F_s_Hint(m_F_n_State(), vm_objDecoder.m_F_n_Lack());
    const std::int64_t nRetryMs = vm_pChannel ? vm_pChannel->m_F_n_RetryInMs() : -1;
    return nRetryMs < 0 ? sHint : sHint + u'\n' + Tr(nsHost::NextTry).arg((nRetryMs + 999) / 1000);
}

QString CLiveCell::m_F_s_Description() const
{
    const QString sState = CLiveState::s_F_s_Text(m_F_n_State());
    if (vm_stKey.nNvrID < 0)
        return m_F_s_Hint();
    return m_F_n_State() == emDef_LiveState::NoPicture ? sState + u". "_s + m_F_s_Hint() : sState;
}

void CLiveCell::m_S_TakePicture()
{
    vm_bTakePosted = false;
    m_S_TakeSnapshot();
    if (!vm_pChannel || !vm_pChannel->m_F_b_WantsPictures() || !vm_objDecoder.m_F_b_TakePicture(vm_stPicture))
        return;
    vm_nKeepUntilMs = 0;
    vm_pChannel->m_S_CountPicture();
    update(m_F_o_PictureArea());
}

void CLiveCell::m_S_TakeSnapshot()
{
    stDef_Picture stWhole;
    if (vm_nSnapshotUntilMs == 0 || !vm_objDecoder.m_F_b_TakeSnapshot(stWhole))
        return;
    vm_nSnapshotUntilMs = 0;
    Q_EMIT S_Snapshot(ImageOf(stWhole).copy());
}

void CLiveCell::m_S_OnState()
{
    const bool bPictures = vm_pChannel && vm_pChannel->m_F_b_WantsPictures() && vm_pChannel->m_F_n_PictureAgeMs() >= 0;
    if (!bPictures && !m_F_b_KeepsPicture())
        vm_stPicture.nSerial = 0;
    m_S_UpdateTexts();
    const bool bEmpty = vm_stKey.nNvrID < 0;
    setAccessibleName(bEmpty ? Tr(nsHost::EmptyCell) : vm_sTitle);
    setAccessibleDescription(m_F_s_Description());
    update();
    if (vm_pChannel && m_F_n_State() == emDef_LiveState::Lost)
        Q_EMIT S_Lost(vm_stKey.nNvrID);
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
    const QSizeF szPixels = isVisible() ? QSizeF(m_F_o_PictureArea().size()) * devicePixelRatioF() : QSizeF(0, 0);
    vm_objDecoder.m_S_SetCellSize(int(std::floor(szPixels.width())), int(std::floor(szPixels.height())));
}

void CLiveCell::resizeEvent(QResizeEvent* pEvent)
{
    QWidget::resizeEvent(pEvent);
    m_S_TellSize();
}

void CLiveCell::hideEvent(QHideEvent* pEvent)
{
    QWidget::hideEvent(pEvent);
    m_S_TellSize();
}

void CLiveCell::showEvent(QShowEvent* pEvent)
{
    QWidget::showEvent(pEvent);
    m_S_TellSize();
}

void CLiveCell::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_OnState();
}

void CLiveCell::focusInEvent(QFocusEvent* pEvent)
{
    QWidget::focusInEvent(pEvent);
    Q_EMIT S_Focused();
    update();
}

void CLiveCell::focusOutEvent(QFocusEvent* pEvent)
{
    QWidget::focusOutEvent(pEvent);
    update();
}

void CLiveCell::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Left:
        return Q_EMIT S_Move(-1, 0);
    case Qt::Key_Right:
        return Q_EMIT S_Move(1, 0);
    case Qt::Key_Up:
        return Q_EMIT S_Move(0, -1);
    case Qt::Key_Down:
        return Q_EMIT S_Move(0, 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Q_EMIT S_Enlarge();
    case Qt::Key_Delete:
        return Q_EMIT S_Empty();
    default:
        QWidget::keyPressEvent(pEvent);
    }
}

void CLiveCell::mousePressEvent(QMouseEvent* pEvent)
{
    vm_ptPressed = pEvent->pos();
    QWidget::mousePressEvent(pEvent);
}

void CLiveCell::mouseMoveEvent(QMouseEvent* pEvent)
{
    const bool bFar = (pEvent->pos() - vm_ptPressed).manhattanLength() >= QApplication::startDragDistance();
    if (!(pEvent->buttons() & Qt::LeftButton) || !bFar || vm_stKey.nNvrID < 0)
        return;
    auto* const pDrag = new QDrag(this);
    pDrag->setMimeData(CChannelDrag::s_F_p_Make({vm_stKey}));
    pDrag->setPixmap(grab().scaledToWidth(int(DragWidth * devicePixelRatioF()), Qt::SmoothTransformation));
    pDrag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
}

void CLiveCell::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        Q_EMIT S_Enlarge();
}

void CLiveCell::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (CChannelDrag::s_F_ar_Read(pEvent->mimeData()).isEmpty())
        return;
    vm_bDropTarget = true;
    update();
    pEvent->acceptProposedAction();
}

void CLiveCell::dragLeaveEvent(QDragLeaveEvent*)
{
    vm_bDropTarget = false;
    update();
}

void CLiveCell::dropEvent(QDropEvent* pEvent)
{
    vm_bDropTarget = false;
    update();
    const QList<stDef_ChannelKey> arKeys = CChannelDrag::s_F_ar_Read(pEvent->mimeData());
    if (arKeys.isEmpty())
        return;
    pEvent->acceptProposedAction();
    Q_EMIT S_Dropped(arKeys);
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
    const bool bPicture = vm_stPicture.nSerial != 0;
    if (bPicture)
        m_S_PaintPicture(objPainter);
    if (bPicture && m_F_n_State() == emDef_LiveState::Stalled)
        m_S_PaintStale(objPainter);
    if (!bPicture || (m_F_n_State() != emDef_LiveState::Live && !m_F_b_KeepsPicture()))
        m_S_PaintMessage(objPainter);
    const bool bMarked = vm_bCurrent || vm_bDropTarget;
    const qreal nFrame = bMarked ? (hasFocus() || vm_bDropTarget ? 3 : 2) : 1;
    objPainter.setRenderHint(QPainter::Antialiasing, false);
    objPainter.setBrush(Qt::NoBrush);
    objPainter.setPen(QPen(palette().color(bMarked ? QPalette::Highlight : QPalette::Mid), nFrame, Qt::SolidLine,
                           Qt::SquareCap, Qt::MiterJoin));
    objPainter.drawRect(QRectF(rect()).adjusted(nFrame / 2, nFrame / 2, -nFrame / 2, -nFrame / 2));
}

void CLiveCell::m_S_PaintCaption(QPainter& objPainter) const
{
    const QRect rcCaption(0, 0, width(), m_F_n_CaptionHeight());
    objPainter.fillRect(rcCaption, palette().color(QPalette::Base));
    QRect rcText = rcCaption.adjusted(2 * CaptionPad, 0, -2 * CaptionPad, 0);
    const emDef_LiveState nState = m_F_n_State();
    const bool bEmpty = vm_stKey.nNvrID < 0;
    const QString sTitle = bEmpty ? Tr(nsHost::EmptyCell) : vm_sTitle;
    QFont objBold = font();
    objBold.setBold(true);
    const int nTitle = QFontMetrics(objBold).horizontalAdvance(sTitle);
    if (!bEmpty) {
        // Where room is scarce the word goes before the name does: the mark stays, and what doesn't play says so at
        // large.
        const QString sState = CLiveState::s_F_s_Text(nState);
        const int nMark = MarkSize + 2 * CaptionPad;
        const int nWord = fontMetrics().horizontalAdvance(sState) + CaptionPad;
        const bool bFits = nTitle + nMark + nWord <= rcText.width();
        if (bFits) {
            objPainter.setPen(palette().color(QPalette::Text));
            objPainter.drawText(rcText, Qt::AlignRight | Qt::AlignVCenter, sState);
            rcText.setWidth(rcText.width() - nWord);
        }
        rcText.setWidth(rcText.width() - MarkSize);
        const QRectF rcMark(rcText.x() + rcText.width(), (rcCaption.height() - MarkSize) / 2.0, MarkSize, MarkSize);
        CLiveState::s_S_DrawMark(objPainter, rcMark, nState, palette());
        rcText.setWidth(rcText.width() - 2 * CaptionPad);
        const int nRate = fontMetrics().horizontalAdvance(vm_sRate) + 2 * CaptionPad;
        if (nTitle + nRate <= rcText.width()) { // the title goes first
            QColor objDim = palette().color(QPalette::Text);
            objDim.setAlphaF(0.7F);
            objPainter.setPen(objDim);
            objPainter.drawText(rcText, Qt::AlignRight | Qt::AlignVCenter, vm_sRate);
            rcText.setWidth(rcText.width() - nRate);
        }
    }
    objPainter.setFont(objBold);
    const QColor objText = palette().color(QPalette::Text);
    objPainter.setPen(bEmpty ? CLiveState::s_F_o_Quiet(objText) : objText);
    objPainter.drawText(rcText, Qt::AlignLeft | Qt::AlignVCenter,
                        QFontMetrics(objBold).elidedText(sTitle, Qt::ElideRight, rcText.width()));
    objPainter.setFont(font());
}

void CLiveCell::m_S_PaintPicture(QPainter& objPainter) const
{
    const QImage objImage = ImageOf(vm_stPicture);
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

// An old picture never passes for a live one: it is darkened and hatched.
void CLiveCell::m_S_PaintStale(QPainter& objPainter) const
{
    const QRect rcArea = m_F_o_PictureArea();
    objPainter.fillRect(rcArea, QColor(0, 0, 0, 110));
    objPainter.save();
    objPainter.setClipRect(rcArea);
    objPainter.setRenderHint(QPainter::Antialiasing);
    objPainter.setPen(QPen(QColor(255, 255, 255, 60), 6));
    for (int nX = rcArea.left() - rcArea.height(); nX < rcArea.right(); nX += HatchStep)
        objPainter.drawLine(nX, rcArea.bottom(), nX + rcArea.height(), rcArea.top());
    objPainter.restore();
}

void CLiveCell::m_S_PaintMessage(QPainter& objPainter) const
{
    const QRect rcArea = m_F_o_PictureArea();
    const emDef_LiveState nState = m_F_n_State();
    const bool bEmpty = vm_stKey.nNvrID < 0;
    const QString sHead = bEmpty ? Tr(nsHost::EmptyCell) : CLiveState::s_F_s_Text(nState);
    QFont objLarge = font();
    objLarge.setPointSizeF(font().pointSizeF() * 1.3);
    objLarge.setBold(true);
    const int nTextWidth = rcArea.width() - 4 * CaptionPad;
    const int nHead = QFontMetrics(objLarge).height();
    const int nFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const int nHint =
        fontMetrics().boundingRect(QRect(0, 0, nTextWidth, rcArea.height()), nFlags, vm_sShownHint).height();
    const int nMark = bEmpty ? 0 : 2 * MarkSize;
    const int nTotal = nMark + nHead + nHint + 2 * CaptionPad;
    int nTop = std::max(rcArea.center().y() - nTotal / 2, rcArea.top());
    if (vm_stPicture.nSerial != 0) { // on a picture the words stand on a plate
        const int nPlate =
            std::max(QFontMetrics(objLarge).horizontalAdvance(sHead), fontMetrics().horizontalAdvance(vm_sShownHint)) +
            6 * CaptionPad;
        const QRect rcPlate(rcArea.center().x() - nPlate / 2, nTop - CaptionPad, nPlate, nTotal + 2 * CaptionPad);
        objPainter.setRenderHint(QPainter::Antialiasing);
        objPainter.setPen(Qt::NoPen);
        objPainter.setBrush(QColor(0, 0, 0, 200));
        objPainter.drawRoundedRect(rcPlate.intersected(rcArea), CaptionPad, CaptionPad);
    }
    if (!bEmpty) {
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
    objPainter.drawText(QRect(rcArea.x() + 2 * CaptionPad, nTop, nTextWidth, rcArea.bottom() - nTop), nFlags,
                        vm_sShownHint);
}
