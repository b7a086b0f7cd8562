#pragma once

#include <QHeaderView>

/// The header of a `CTimeListCtrl`: a ruler of 24 hours over its second column.
class CTimeRuler : public QHeaderView
{
    Q_OBJECT

public:
    explicit CTimeRuler(QWidget* pParent);

    QSize sizeHint() const override;

protected:
    void paintSection(QPainter* pPainter, const QRect& rcSection, int nSection) const override;

private:
    void m_S_PaintTicks(QPainter* pPainter, const QRect& rcSection) const;
    void m_S_PaintNumbers(QPainter* pPainter, const QRect& rcSection) const;
};
