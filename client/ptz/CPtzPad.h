#pragma once

#include <QWidget>

/// The pad of eight directions around a home button. Pressed, it tells a direction until it is released; dragged to
/// another direction, that one. Keys reach it through CPtzKeys.
class CPtzPad : public QWidget
{
    Q_OBJECT

public:
    explicit CPtzPad(QWidget* pParent = nullptr);

    /// The direction that is lit, as the camera moves; none with 0, 0.
    void m_S_SetLit(int nPan, int nTilt);
    /// Ends a press without a word: the release to come counts no more.
    void m_S_Reset();

    QSize sizeHint() const override;

Q_SIGNALS:
    void S_Direction(int nPan, int nTilt); ///< each -1 to 1; both 0: released
    void S_Home();

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;

private:
    enum class emDef_Press
    {
        None,
        Direction,
        Home
    };

    QRectF m_F_o_Circle() const;
    bool m_F_b_InHome(QPointF pt) const;
    QPoint m_F_o_Direction(QPointF pt) const;
    void m_S_PaintArrow(QPainter& objPainter, int nEighth) const;
    void m_S_PaintHome(QPainter& objPainter) const;
    void m_S_SetHover(const QPoint& ptDirection, bool bHome);

    emDef_Press vm_nPress = emDef_Press::None;
    QPoint vm_ptPressed; ///< direction: x pan, y tilt
    QPoint vm_ptLit;
    QPoint vm_ptHover;
    bool vm_bHoverHome = false;
};
