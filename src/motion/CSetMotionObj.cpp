#include "motion/CSetMotionObj.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "toolkit/user/CUserSide.h"

namespace {

constexpr int FirstPassMs = 10;
constexpr int PassMs = 200;                            // from the end of one pass to the next
constexpr int SurfaceWidth = 480, SurfaceHeight = 360; // whatever the canvas's size: beyond it nothing is shown
constexpr int NoWindow = -1;

} // namespace

CSetMotionObj::CSetMotionObj(QWidget* pParent) : QWidget(pParent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

CSetMotionObj::~CSetMotionObj()
{
    m_S_ResetWnds(-1, 0);
}

void CSetMotionObj::m_S_ResetWnds(int nCamera, int nCount)
{
    vm_pTimer.reset();
    for (CMotionWnd* const pWnd : vm_pMotionWnds)
        delete pWnd;
    vm_pMotionWnds.clear();
    vm_nCamera = -1;
    vm_nCount = 0;
    if (nCamera < 0) {
        vm_pLights->m_S_Reset(0);
        return m_S_Redraw();
    }
    vm_nCamera = nCamera;
    vm_nCount = std::clamp(nCount, 0, CMotionLights::Most);
    vm_pLights->m_S_Reset(vm_nCount);
    vm_pMotionWnds.resize(static_cast<std::size_t>(vm_nCount));
    vm_pTimer = std::make_unique<QObject>();
    m_S_AwaitPass(FirstPassMs);
}

bool CSetMotionObj::m_F_b_Open(int nPosition, const stDef_Rect& stRect)
{
    if (nPosition < 0 || nPosition >= vm_nCount)
        return false;
    auto* const pWnd = new CMotionWnd(this);
    delete std::exchange(vm_pMotionWnds[static_cast<std::size_t>(nPosition)], pWnd);
    connect(pWnd, &CMotionWnd::S_Pressed, this, [this](int nID) {
        if (nID == NoWindow)
            return;
        vm_nSelect = nID;
        Q_EMIT S_Selected(nID);
    });
    connect(pWnd, &CMotionWnd::S_Placed, this, &CSetMotionObj::S_Placed);
    return pWnd->m_F_b_Create(stRect, nPosition);
}

CMotionWnd* CSetMotionObj::m_F_p_Wnd(int nPosition) const
{
    return nPosition >= 0 && nPosition < vm_nCount ? vm_pMotionWnds[static_cast<std::size_t>(nPosition)] : nullptr;
}

void CSetMotionObj::m_S_AwaitPass(int nMs)
{
    CUserSide::s_F_o_Get().m_S_After(nMs, vm_pTimer.get(), [this] {
        m_S_Redraw();
        m_S_AwaitPass(PassMs);
    });
}

// As sharp as the screen: the surface has the pixels that the screen has for its size.
void CSetMotionObj::m_S_Redraw()
{
    const qreal dRatio = devicePixelRatioF();
    vm_objSurface = QImage((QSizeF(SurfaceWidth, SurfaceHeight) * dRatio).toSize(), QImage::Format_RGB32);
    vm_objSurface.setDevicePixelRatio(dRatio);
    vm_objSurface.fill(Qt::black);
    QPainter objPainter(&vm_objSurface);
    for (CMotionWnd* const pWnd : vm_pMotionWnds) {
        if (!pWnd)
            continue;
        pWnd->vm_bMotion = vm_pLights->m_F_b_Lit(pWnd->vm_nID);
        pWnd->m_S_DrawOn(objPainter);
    }
    update();
}

void CSetMotionObj::paintEvent(QPaintEvent* /*pEvent*/)
{
    QPainter objPainter(this);
    objPainter.fillRect(rect(), Qt::black);
    objPainter.drawImage(QPoint(), vm_objSurface);
}
