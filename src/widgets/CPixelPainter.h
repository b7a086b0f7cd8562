#pragma once

#include <QColor>
#include <QPainter>

/// Paints on whole pixels of the screen while it lives: where a pixel of a window is 1.25 or 1.5 of them, lines stay
/// sharp. What it is given is in pixels of the window; it leaves the painter as it found it.
class CPixelPainter
{
public:
    explicit CPixelPainter(QPainter* pPainter);
    ~CPixelPainter() { vm_pPainter->restore(); }
    CPixelPainter(const CPixelPainter&) = delete;
    CPixelPainter& operator=(const CPixelPainter&) = delete;

    QRect m_F_o_Screen(const QRectF& rcWindow) const;

    void m_S_Fill(const QRectF& rcWindow, const QColor& objColor);
    /// A thin line downwards from the point.
    void m_S_Line(const QPointF& ptTop, qreal nHeight, const QColor& objColor);
    /// A thin frame within the rectangle.
    void m_S_Frame(const QRectF& rcWindow, const QColor& objTopLeft, const QColor& objBottomRight);

private:
    QPainter* vm_pPainter;
    QTransform vm_objToScreen;
    int vm_nLine; ///< width of a thin line, in pixels of the screen
};

/// A colour word with red in its low byte.
inline QColor ColorOf(quint32 nWord)
{
    return {static_cast<int>(nWord & 0xFF), static_cast<int>(nWord >> 8 & 0xFF), static_cast<int>(nWord >> 16 & 0xFF)};
}
