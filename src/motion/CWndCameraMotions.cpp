#include "motion/CWndCameraMotions.h"

#include <QLayout>
#include <utility>

#include "drivers/brands/Drivers.h"
#include "toolkit/user/CWaitCursor.h"

namespace {

constexpr int ShortMs = 5000, LongMs = 50000; // brands whose cameras the recorder has to ask first take long
constexpr int ControlId = 20000;

// Window type, first value, name editable, time-out, enables after Add.
constexpr stDef_MotionBrand AmtkV5{true, {"ObjectSize", "ObjectSize"}, true, ShortMs, false};
constexpr stDef_MotionBrand AmtkV6{true, {"ObjectSize", "ObjectSize"}, true, ShortMs, true};
constexpr stDef_MotionBrand Dynacolor{false, {"Threshold", "Threshold"}, false, LongMs, false};
constexpr stDef_MotionBrand Fiti{false, {"Percentage", "Percentage"}, false, LongMs, false};
constexpr stDef_MotionBrand Pixord{false, {"Trigger", "Trigger"}, false, LongMs, false};
constexpr stDef_MotionBrand Smax{false, {"Percentage", "Percentage"}, true, LongMs, false};
constexpr stDef_MotionBrand Zavio{false, {"Threshold", "Threshold"}, true, LongMs, false};

template <class Window>
Window* MakeOnce(CCamObj_Base* pCamObj, QWidget* pParent)
{
    if (!pCamObj->m_pMotionWnd) {
        pCamObj->m_pMotionWnd = new Window(pCamObj, pParent);
        pCamObj->m_pMotionWnd->setObjectName(QStringLiteral("Motion"));
        pCamObj->m_pMotionWnd->setProperty("id", ControlId);
        if (pParent->layout())
            pParent->layout()->addWidget(pCamObj->m_pMotionWnd);
    }
    return static_cast<Window*>(pCamObj->m_pMotionWnd);
}

} // namespace

CWndCameraMotion_AMTKV5::CWndCameraMotion_AMTKV5(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(AmtkV5, pCamObj, pParent)
{}

CWndCameraMotion_AMTKV6::CWndCameraMotion_AMTKV6(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(AmtkV6, pCamObj, pParent)
{}

CWndCameraMotion_DYNACOLOR::CWndCameraMotion_DYNACOLOR(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(Dynacolor, pCamObj, pParent)
{}

CWndCameraMotion_FITI::CWndCameraMotion_FITI(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(Fiti, pCamObj, pParent)
{}

CWndCameraMotion_PIXORD::CWndCameraMotion_PIXORD(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(Pixord, pCamObj, pParent)
{}

CWndCameraMotion_SMAX::CWndCameraMotion_SMAX(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(Smax, pCamObj, pParent)
{}

CWndCameraMotion_ZAVIO::CWndCameraMotion_ZAVIO(CCamObj_Base* pCamObj, QWidget* pParent)
    : CWndCameraMotion(Zavio, pCamObj, pParent)
{}

CWndCameraMotion_ONVIF::CWndCameraMotion_ONVIF(CCamObj_Base* /*pCamObj*/, QWidget* pParent) : QWidget(pParent) {}

// What the drivers declare stands here, beside the windows that it opens.

void CCamObj_AMTKV5::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_AMTKV5>(this, pParent)->m_S_Open();
}

void CCamObj_AMTKV6::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_AMTKV6>(this, pParent)->m_S_Open();
}

void CCamObj_DYNACOLOR::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_DYNACOLOR>(this, pParent)->m_S_Open();
}

void CCamObj_FITI::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_FITI>(this, pParent)->m_S_Open();
}

void CCamObj_PIXORD::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_PIXORD>(this, pParent)->m_S_Open();
}

void CCamObj_SMAX::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_SMAX>(this, pParent)->m_S_Open();
}

void CCamObj_ZAVIO::m_S_ShowMotion(QWidget* pParent)
{
    MakeOnce<CWndCameraMotion_ZAVIO>(this, pParent)->m_S_Open();
}

void CCamObj_ONVIF::m_S_ShowMotion(QWidget* pParent)
{
    const CWaitCursor objWait;
    MakeOnce<CWndCameraMotion_ONVIF>(this, pParent)->show();
}

// All windows but ONVIF's, which has nothing to save, are of one base.
void CCamObj_Base::m_S_CloseMotion(bool bSave)
{
    auto* const pWnd = dynamic_cast<CWndCameraMotion*>(m_pMotionWnd);
    if (bSave && pWnd)
        pWnd->m_F_b_SaveMotionSetting();
    delete std::exchange(m_pMotionWnd, nullptr);
}
