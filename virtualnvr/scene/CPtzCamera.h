#pragma once

#include "scene/stDef_PtzState.h"
#include "scene/stDef_PtzView.h"

#include <map>
#include <string>

/// One camera that pans, tilts and zooms by commands. Its position is a function of the time since the last of them, so
/// that nothing has to tick. Times are seconds of any steady clock. For one thread.
class CPtzCamera
{
public:
    using Query = std::map<std::string, std::string>;

    explicit CPtzCamera(int nChannel) : vm_nChannel(nChannel) {}

    /// Takes a command as ptz.cgi has it. Speeds are 1 to 10, rates -32768 to 32768; what is beyond counts as the
    /// limit.
    /// @return false, with nothing changed, if it is none, or names a preset or tour that there isn't
    bool m_F_b_Command(const Query& mapQuery, double fNow);

    stDef_PtzState m_F_o_State(double fNow) const;
    stDef_PtzView m_F_o_View(double fNow) const;

private:
    enum class emDef_Motion
    {
        Glide, ///< to a pose, where it rests
        Drive, ///< at a rate, up to the limits
        Sway,  ///< pans to and fro
        Tour
    };
    struct stDef_Motion
    {
        emDef_Motion eKind = emDef_Motion::Glide;
        double fStart = 0.0;
        double fSeconds = 0.0; ///< of a glide
        stDef_PtzPose stFrom;
        stDef_PtzPose stTo; ///< of a glide; of others: rates a second
        int nTour = -1;
    };

    bool m_F_b_Move(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_StepZoom(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_PanTilt(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_Zoom(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_Preset(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_Tour(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_AutoPan(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_AutoFocus(const Query& mapQuery, const std::string& sValue, double fNow);
    bool m_F_b_AutoIris(const Query& mapQuery, const std::string& sValue, double fNow);

    void m_S_Glide(const stDef_PtzPose& stTo, double fSeconds, double fNow);
    void m_S_Step(const stDef_PtzPose& stStep, double fNow);
    void m_S_Drive(const stDef_PtzPose& stRates, double fNow);
    void m_S_Freeze(double fNow);
    stDef_PtzPose m_F_o_Rates() const;
    stDef_PtzPose m_F_o_PresetPose(int nPreset) const;
    stDef_PtzPose m_F_o_TourPose(double fPassed) const;
    stDef_PtzPose m_F_o_Pose(double fNow) const;
    int m_F_n_Preset(double fNow) const;
    std::string m_F_s_Doing(const stDef_PtzState& stState) const;

    int vm_nChannel;
    stDef_Motion vm_stMotion;
    int vm_nPreset = -1; ///< that a glide leads to
    int vm_nFocus = 50;
    int vm_nIris = 50;
    bool vm_bAutoFocus = true;
    bool vm_bAutoIris = true;
};
