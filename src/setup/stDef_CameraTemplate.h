#pragma once

#include <QString>

class CXmlObj;

/// How a newly added camera is to be set up: a node of the System document.
struct stDef_CameraTemplate
{
    int nResolution = 0; ///< position in the list; 0 is the largest
    int nFPS = 0;        ///< 0 is the highest
    int nRateCtrl = 0;   ///< 1 CBR, 2 EVBR; 0 counts as EVBR
    int nQuality = 0;    ///< 1..100
    QString sAccount;    ///< tried on cameras that were found
    QString sPassword;

    static stDef_CameraTemplate s_F_o_Read(const CXmlObj& xmlSystem);
    void m_S_Write(CXmlObj& xmlSystem) const;
    static void s_S_WriteResolution(CXmlObj& xmlSystem, int nResolution);
    static void s_S_WriteFps(CXmlObj& xmlSystem, int nFPS);
};
