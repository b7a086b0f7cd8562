#pragma once

#include <span>

#include "drivers/CCamObj_Base.h"

// The drivers of all brands. What differs is their row of keys, their own way with the template, and the windows that
// they open, whose bodies stand beside those windows.

/// Drives the first generation of AMTK cameras. Their streams are numbered profiles.
class CCamObj_AMTKV5 : public CCamObj_Base
{
public:
    CCamObj_AMTKV5();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives the second generation of AMTK cameras, which tell a bit rate for each way of rate control.
class CCamObj_AMTKV6 : public CCamObj_Base
{
public:
    CCamObj_AMTKV6();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives DYNACOLOR cameras: one range of rates for all resolutions, and no codec with them.
class CCamObj_DYNACOLOR : public CCamObj_Base
{
public:
    CCamObj_DYNACOLOR();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives FITI cameras, which have a single stream.
class CCamObj_FITI : public CCamObj_Base
{
public:
    CCamObj_FITI();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives ONVIF cameras, whose streams are told by tokens.
class CCamObj_ONVIF : public CCamObj_Base
{
public:
    CCamObj_ONVIF();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives PIXORD cameras, whose profiles are numbered by their place in the resolution list.
class CCamObj_PIXORD : public CCamObj_Base
{
public:
    CCamObj_PIXORD();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives SMAX cameras, whose low stream is MJPEG with a range of rates of its own.
class CCamObj_SMAX : public CCamObj_Base
{
public:
    CCamObj_SMAX();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Drives ZAVIO cameras, which have one range of qualities.
class CCamObj_ZAVIO : public CCamObj_Base
{
public:
    CCamObj_ZAVIO();

    void m_S_ShowParameter(QWidget* pParent) override;
    void m_S_ShowMotion(QWidget* pParent) override;

private:
    void m_S_MapTemplate(CTemplateMap& objMap) const override;
};

/// Makes the driver of a vendor.
struct stDef_Driver
{
    int nVendorID;
    CCamObj_Base* (*fnMake)();
};

/// Every brand that has a driver. What is to be done for each of them walks this list.
std::span<const stDef_Driver> DriverList();
