#pragma once

#include <QImage>
#include <QWidget>
#include <memory>
#include <vector>

#include "motion/CMotionLights.h"
#include "motion/CMotionWnd.h"

/// The canvas on which an operator places the motion windows of one camera. It knows neither recorder nor documents: it
/// is fed rectangles, and they are read back from its windows. What it shows is painted anew every 200 ms, over its
/// windows; between two passes nothing changes. GUI thread only.
class CSetMotionObj : public QWidget
{
    Q_OBJECT

public:
    explicit CSetMotionObj(QWidget* pParent = nullptr);
    ~CSetMotionObj() override;

    /// Throws all windows away. With a camera, from 0, room for `nCount` new ones (at most `CMotionLights::Most`) is
    /// made and the passes begin; with -1 they end.
    void m_S_ResetWnds(int nCamera, int nCount);
    /// Opens the window of a position. False for one that there is no room for.
    bool m_F_b_Open(int nPosition, const stDef_Rect& stRect);
    /// Null for a position that has no window.
    CMotionWnd* m_F_p_Wnd(int nPosition) const;
    /// Paints all windows onto the surface, and that onto the canvas.
    void m_S_Redraw();
    /// What the stream's reader writes to, also beyond the life of the canvas.
    const std::shared_ptr<CMotionLights>& m_F_p_Lights() const { return vm_pLights; }

    int vm_nCount = 0;   ///< windows that there is room for
    int vm_nSelect = 0;  ///< position of the window that was pressed last
    int vm_nCamera = -1; ///< -1 while there is no room for any

Q_SIGNALS:
    void S_Selected(int nPosition); ///< message 2270
    void S_Placed(int nPosition);   ///< a window was moved or resized

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    void m_S_AwaitPass(int nMs);

    std::vector<CMotionWnd*> vm_pMotionWnds; ///< children; null where no window was opened
    std::shared_ptr<CMotionLights> vm_pLights = std::make_shared<CMotionLights>();
    QImage vm_objSurface;               ///< of the last pass
    std::unique_ptr<QObject> vm_pTimer; ///< number 1225: lives while passes are made
};
