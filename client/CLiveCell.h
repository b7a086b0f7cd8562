#pragma once

#include <QWidget>
#include <atomic>
#include <memory>

#include "CLiveChannel.h"
#include "CRingDecoder.h"

/// One cell of the live grid: a caption that says what the cell really shows, and the picture below it. It decodes from
/// the shared ring of its stream and never talks to the recorder itself.
class CLiveCell : public QWidget
{
    Q_OBJECT

public:
    explicit CLiveCell(QWidget* pParent = nullptr);
    ~CLiveCell() override;

    /// Shows another stream, which still has to be connected. False if its connection object can't be made.
    bool m_F_b_Assign(CEnvObj* pEnv, const stDef_LiveSource& stSource, const stDef_NvrInit& stInit);
    void m_S_Clear();

    void m_S_Connect();
    /// Ending is in two steps, so that many cells end at the same time: tell all, then wait for each.
    void m_S_RequestStop();
    void m_S_Disconnect();
    void m_S_Poll();

    /// Null while the cell is empty.
    const CLiveChannel* m_F_p_Channel() const { return vm_pChannel.get(); }
    /// The picture as it stands on the screen; of serial 0 while there is none.
    const stDef_Picture& m_F_o_Picture() const { return vm_stPicture; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void S_StateChanged();

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;

private:
    void m_S_TakePicture();
    void m_S_OnState();
    void m_S_UpdateRate();
    void m_S_TellSize();
    int m_F_n_CaptionHeight() const;
    QRect m_F_o_PictureArea() const;
    void m_S_PaintCaption(QPainter& objPainter) const;
    void m_S_PaintPicture(QPainter& objPainter) const;
    void m_S_PaintMessage(QPainter& objPainter) const;

    std::unique_ptr<CLiveChannel> vm_pChannel;
    stDef_Picture vm_stPicture;
    QString vm_sRate;
    std::atomic<bool> vm_bTakePosted{false}; ///< one picture event at a time stands in the queue
    CRingDecoder vm_objDecoder;              // last: its thread ends before what it calls goes
};
