#pragma once

#include "motion/CWndCameraMotion.h"

// The motion windows of the brands. Each is a row of what it has; ONVIF's alone is something else.

class CWndCameraMotion_AMTKV5 : public CWndCameraMotion
{
public:
    CWndCameraMotion_AMTKV5(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_AMTKV6 : public CWndCameraMotion
{
public:
    CWndCameraMotion_AMTKV6(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_DYNACOLOR : public CWndCameraMotion
{
public:
    CWndCameraMotion_DYNACOLOR(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_FITI : public CWndCameraMotion
{
public:
    CWndCameraMotion_FITI(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_PIXORD : public CWndCameraMotion
{
public:
    CWndCameraMotion_PIXORD(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_SMAX : public CWndCameraMotion
{
public:
    CWndCameraMotion_SMAX(CCamObj_Base* pCamObj, QWidget* pParent);
};

class CWndCameraMotion_ZAVIO : public CWndCameraMotion
{
public:
    CWndCameraMotion_ZAVIO(CCamObj_Base* pCamObj, QWidget* pParent);
};

/// Empty: the motion of ONVIF cameras can't be set through the recorder.
class CWndCameraMotion_ONVIF : public QWidget
{
public:
    CWndCameraMotion_ONVIF(CCamObj_Base* pCamObj, QWidget* pParent);
};
