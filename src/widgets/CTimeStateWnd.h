#pragma once

#include <QLabel>

class CTimeStateBar;

/// A block on a `CTimeStateBar`, which makes and owns it: turns what the mouse does to it into messages, and paints it.
/// It doesn't move itself.
class CTimeStateWnd : public QLabel
{
    Q_OBJECT

public:
    explicit CTimeStateWnd(QWidget* pBar);

    /// Makes it the focused block, which may be none, and repaints this one and the one before.
    static void s_S_Focus(CTimeStateWnd* pWnd);

    int vm_nIndex = -1; ///< position in its bar; -1 is the selection block, which lets the mouse through to its bar
    quint32 vm_nColor = 0xFFFFFF; ///< red in the low byte
    int vm_nDragX = -1;           ///< screen x of the last drag step, -1 when not dragged
    int vm_nDragMode = 0;         ///< 0 the whole, 1 the right edge, 2 the left edge
    bool vm_bTracking = false;    ///< the pointer is over it

Q_SIGNALS:
    void S_Move(int nIndex, int nPixels);       ///< message 1125: it was dragged so far
    void S_DragRight(int nIndex, int nScreenX); ///< message 1126
    void S_DragLeft(int nIndex, int nScreenX);  ///< message 1127
    void S_Clicked(int nIndex);                 ///< message 1128
    void S_DoubleClicked();                     ///< becomes command 1172 of the page

protected:
    bool event(QEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    CTimeStateBar* m_F_p_Bar() const;
    void m_S_ShowGrip(int nX);
    bool m_F_b_IsFar(int nScreenX) const;
    void m_S_DragTo(int nScreenX);
};
