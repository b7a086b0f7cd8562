#pragma once

#include <QString>
#include <span>

#include "host/Lib_Bedrock.h"

/// How wide a newly added camera's pictures may be.
struct stDef_TemplateResolution
{
    static constexpr int Unlimited = -1;

    const char* pszText;
    int nWidest; ///< pixels
};

/// How a newly added camera is to be set up: a node of the System document.
struct stDef_CameraTemplate
{
    int nResolution = 0; ///< position in the list of resolutions
    int nFPS = 0;        ///< 0 is the highest
    int nRateCtrl = 0;   ///< 1 CBR, 2 EVBR; 0 counts as EVBR
    int nQuality = 0;    ///< 1..100
    QString sAccount;    ///< tried on cameras that were found
    QString sPassword;

    /// All resolutions, the largest first.
    static std::span<const stDef_TemplateResolution> s_F_ar_Resolutions();
    /// Null for a position that the list doesn't have.
    static const stDef_TemplateResolution* s_F_p_Resolution(int nResolution);

    static stDef_CameraTemplate s_F_o_Read(const CXmlObj& xmlSystem);
    /// The same for a camera that is added, for which a missing rate is 30 frames a second.
    static stDef_CameraTemplate s_F_o_ReadForCamera(const CXmlObj& xmlSystem);
    void m_S_Write(CXmlObj& xmlSystem) const;
    /// Writes one value and leaves the others as they stand in the document.
    void m_S_WriteOne(CXmlObj& xmlSystem, nsMembers::Pointer<stDef_CameraTemplate> pMember) const;
};
