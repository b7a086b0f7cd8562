#pragma once

#include <QString>
#include <optional>

class CXmlObj;
struct stDef_CamConnect;

inline constexpr int g_nOnvifVendor = 4;

/// One camera as the form of the Camera page has it: texts and ports as they are written there.
struct stDef_CameraValues
{
    int nVendorID = -1; ///< -1: none
    QString sModel;
    QString sName;
    QString sIP;
    QString sHttpPort;
    QString sRtspPort;
    int nOnvifAuth = 1;
    QString sUser;
    QString sPassword;

    /// What counts for a key that a node lacks. A port without a default is taken as the text that stands there.
    struct stDef_Defaults
    {
        int nVendorID;
        std::optional<int> nHttpPort;
        std::optional<int> nRtspPort;
    };
    static constexpr stDef_Defaults s_stStored{-1, 80, 554}; ///< for a camera object
    static constexpr stDef_Defaults s_stShown{0, {}, {}};    ///< for the form

    static stDef_CameraValues s_F_o_Read(const CXmlObj& xmlCamera, const QString& sNode,
                                         const stDef_Defaults& stDefaults);
    /// Ports that are no numbers become 0.
    stDef_CamConnect m_F_o_Connect() const;
};
