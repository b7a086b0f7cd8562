#pragma once

#include <QList>
#include <QWidget>
#include <atomic>
#include <memory>

#include "live/CLiveChannel.h"
#include "live/CRingDecoder.h"
#include "live/stDef_ChannelKey.h"

class CRecorderStore;

/// One cell of the live grid: a caption that says what the cell really shows, and the picture below it. It decodes from
/// the shared ring of its stream and never talks to the recorder itself. Small cells show the second stream.
class CLiveCell : public QWidget
{
    Q_OBJECT

public:
    explicit CLiveCell(QWidget* pParent = nullptr);
    ~CLiveCell() override;

    /// Shows another channel, which still has to be connected; `sTitle` stands in the caption. False if its connection
    /// object can't be made.
    bool m_F_b_Assign(CEnvObj* pEnv, const CRecorderStore* pStore, const stDef_ChannelKey& stKey,
                      const QString& sTitle);
    /// Names a channel that can't be connected yet, as its recorder is still being looked up.
    void m_S_Announce(const stDef_ChannelKey& stKey, const QString& sTitle);
    void m_S_Clear();

    void m_S_SetTitle(const QString& sTitle);
    void m_S_Connect();
    void m_S_RetryNow();
    /// Ending is in two steps, so that many cells end at the same time: tell all, then wait for each.
    void m_S_RequestStop();
    void m_S_Disconnect();
    void m_S_Poll();

    /// The cell that commands go to; it has a frame.
    void m_S_SetCurrent(bool bCurrent);
    /// Asks for the picture in the stream's own size; `S_Snapshot` brings it: a null one at once
    /// if the cell shows none, or after two seconds without any.
    void m_S_Snapshot();

    const stDef_ChannelKey& m_F_o_Key() const { return vm_stKey; }
    const QString& m_F_s_Title() const { return vm_sTitle; }
    emDef_LiveState m_F_n_State() const;
    /// Null while the cell is empty or its recorder is being looked up.
    const CLiveChannel* m_F_p_Channel() const { return vm_pChannel.get(); }
    /// The picture as it stands on the screen; of serial 0 while there is none.
    const stDef_Picture& m_F_o_Picture() const { return vm_stPicture; }

    /// True while the cell changes to its other stream, and the picture of the old one stands in for the new one's.
    bool m_F_b_KeepsPicture() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void S_StateChanged();
    void S_Focused();
    void S_Enlarge();
    void S_Empty();
    void S_Move(int nColumns, int nRows);
    void S_Dropped(QList<stDef_ChannelKey> arKeys);
    void S_Snapshot(QImage objImage);
    void S_Lost(int nNvrID); ///< the stream ended from the other side

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    void m_S_TakePicture();
    void m_S_TakeSnapshot();
    void m_S_OnState();
    void m_S_UpdateTexts();
    void m_S_TellSize();
    void m_S_StartDecoder();
    bool m_F_b_OpenStream(int nStream);
    int m_F_n_FittingStream() const;
    void m_S_FollowSize();
    QString m_F_s_Hint() const;
    QString m_F_s_Description() const;
    int m_F_n_CaptionHeight() const;
    QRect m_F_o_PictureArea() const;
    void m_S_PaintCaption(QPainter& objPainter) const;
    void m_S_PaintPicture(QPainter& objPainter) const;
    void m_S_PaintStale(QPainter& objPainter) const;
    void m_S_PaintMessage(QPainter& objPainter) const;

    stDef_ChannelKey vm_stKey;
    QString vm_sTitle;
    CEnvObj* vm_pEnv = nullptr;
    const CRecorderStore* vm_pStore = nullptr;
    std::unique_ptr<CLiveChannel> vm_pChannel;
    stDef_Picture vm_stPicture;
    QString vm_sRate;
    QString vm_sShownHint;
    QPoint vm_ptPressed;
    bool vm_bCurrent = false;
    bool vm_bDropTarget = false;
    bool vm_bChanging = false;               ///< the stream was told to end, another one follows
    bool vm_bWanted = false;                 ///< told to connect
    std::int64_t vm_nKeepUntilMs = 0;        ///< until when the old stream's picture stands in for the new one's
    std::int64_t vm_nMisfitSinceMs = 0;      ///< since when the other stream would fit the size better; 0: it doesn't
    std::int64_t vm_nSnapshotUntilMs = 0;    ///< 0: none is wanted
    std::atomic<bool> vm_bTakePosted{false}; ///< one picture event at a time stands in the queue
    CRingDecoder vm_objDecoder;              // last: its thread ends before what it calls goes
};
