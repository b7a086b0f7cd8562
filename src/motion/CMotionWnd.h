#pragma once

#include <QWidget>
#include <memory>

#include "host/Lib_Bedrock.h"

class QPainter;

/// One motion window on the canvas, which makes and owns it. The mouse moves it by its body and resizes it by its right
/// and bottom edges, the arrow keys move it and with Shift resize it, by 1 pixel and with Ctrl by 10. It paints nothing
/// itself: the canvas does that for all of them. GUI thread only.
class CMotionWnd : public QWidget
{
    Q_OBJECT

public:
    explicit CMotionWnd(QWidget* pParent);

    /// Shows it at that place of the canvas, as the window of that position. Always true.
    bool m_F_b_Create(const stDef_Rect& stRect, int nID);
    /// Where it stands on the canvas, in pixels.
    stDef_Rect m_F_o_Rect() const;
    /// Blends it over what was painted before, in coordinates of the canvas.
    void m_S_DrawOn(QPainter& objSurface) const;

    int vm_nID = 0;            ///< position in the canvas's array; not the recorder's `Index`
    stDef_Rect vm_rcInit;      ///< the rectangle given at creation
    bool vm_bMotion = false;   ///< the recorder reports motion in it
    bool vm_bSelected = false; ///< it is the selected row of the list
    bool vm_bChecked = false;  ///< it takes part in the camera's motion setting

Q_SIGNALS:
    void S_Pressed(int nID); ///< message 2259: pressed, or reached by a key
    void S_Placed(int nID);  ///< it was moved or resized

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;

private:
    enum class emDef_Drag
    {
        Idle = 0,
        Move = 2,
        Resize = 3
    };
    enum class emDef_Edge
    {
        None = 0,
        Left = 1, ///< never reached: no press yields it
        Right = 2,
        Top = 3, ///< never reached
        Bottom = 4
    };

    void m_S_ShowGrip(const QPoint& pt);
    void m_S_BeginMove(const QPoint& ptScreen);
    void m_S_BeginResize(emDef_Edge nEdge, const QPoint& ptClient);
    void m_S_ResizeTo(const QPoint& ptClient);
    void m_S_AwaitStep();
    void m_S_Step();
    void m_S_EndDrag();
    void m_S_Place(const stDef_Rect& stRect);
    stDef_Rect m_F_o_CanvasOnScreen() const;

    QPoint vm_ptDown{-1, -1}; ///< of the press: on the screen for a move, in the window for a resize
    emDef_Drag vm_nDragMode = emDef_Drag::Idle;
    emDef_Edge vm_nEdge = emDef_Edge::None;
    stDef_Rect vm_rcDown;               ///< on the screen at the press
    int vm_nDownW = 0, vm_nDownH = 0;   ///< its size
    QPoint vm_ptMove, vm_ptMoved;       ///< the newest place of the pointer, and the one that was acted on
    std::unique_ptr<QObject> vm_pTimer; ///< number 1124: lives while the window is moved
};
