#include "scene/CPtzCamera.h"

#include "scene/stDef_PtzPlaces.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

namespace {

constexpr stDef_PtzPose g_stLimit{90.0F, 15.0F, 3.0F};
constexpr stDef_PtzPose g_stFullRate{40.0F, 20.0F, 1.0F}; // a second
constexpr float g_fFullRate = 32768.0F;                   // as commands tell it
constexpr float g_fUnitsPerDegree = 10.0F;
constexpr float g_fStepDegrees = 1.5F; // by speed
constexpr float g_fStepZoom = 0.1F;    // doublings, by speed
constexpr float g_fSwayRate = 3.0F;    // degrees a second, by speed
constexpr int g_nLensStep = 2;         // percent, by speed
constexpr int g_nLensMiddle = 50;      // sharp, and rightly exposed
constexpr int g_nFullBlur = 10;        // as stDef_PtzView has it
constexpr double g_fStepSeconds = 0.4;
constexpr double g_fGlideSeconds = 1.2; // to a preset or home
constexpr double g_fStopSeconds = 5.0;  // of a tour, with the way there
constexpr int g_nFastest = 10;

std::optional<int> Whole(std::string_view s)
{
    int n = 0;
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    return eError == std::errc() && pEnd == s.data() + s.size() ? std::optional(n) : std::nullopt;
}

std::string_view Value(const CPtzCamera::Query& mapQuery, const char* pszKey)
{
    const auto it = mapQuery.find(pszKey);
    return it == mapQuery.end() ? std::string_view() : std::string_view(it->second);
}

int Speed(const CPtzCamera::Query& mapQuery)
{
    return std::clamp(Whole(Value(mapQuery, "speed")).value_or(1), 1, g_nFastest);
}

/// The two whole numbers of "1:2".
std::optional<std::pair<int, int>> Pair(std::string_view s, char cBetween)
{
    const std::size_t nBetween = s.find(cBetween);
    if (nBetween == std::string_view::npos)
        return std::nullopt;
    const auto nFirst = Whole(s.substr(0, nBetween)), nSecond = Whole(s.substr(nBetween + 1));
    return nFirst && nSecond ? std::optional(std::pair(*nFirst, *nSecond)) : std::nullopt;
}

std::optional<bool> Switch(std::string_view s)
{
    return s == "on" ? std::optional(true) : s == "off" ? std::optional(false) : std::nullopt;
}

float Rate(int nValue)
{
    return std::clamp(static_cast<float>(nValue) / g_fFullRate, -1.0F, 1.0F);
}

stDef_PtzPose Within(const stDef_PtzPose& st)
{
    return {std::clamp(st.fPan, -g_stLimit.fPan, g_stLimit.fPan),
            std::clamp(st.fTilt, -g_stLimit.fTilt, g_stLimit.fTilt), std::clamp(st.fZoom, 0.0F, g_stLimit.fZoom)};
}

stDef_PtzPose Sum(const stDef_PtzPose& stA, const stDef_PtzPose& stB, float fTimes = 1.0F)
{
    return {stA.fPan + stB.fPan * fTimes, stA.fTilt + stB.fTilt * fTimes, stA.fZoom + stB.fZoom * fTimes};
}

/// Starts and ends softly, and ends exactly at its goal.
stDef_PtzPose Between(const stDef_PtzPose& stFrom, const stDef_PtzPose& stTo, double fPart)
{
    if (fPart >= 1.0)
        return stTo;
    const auto f = static_cast<float>(std::max(fPart, 0.0));
    const stDef_PtzPose stWay = Sum(stTo, stFrom, -1.0F);
    return Sum(stFrom, stWay, f * f * (3 - 2 * f));
}

struct stDef_Step
{
    std::string_view sName;
    float fPan, fTilt;
    int nFocus, nIris;
};

constexpr stDef_Step g_arSteps[] = {
    {"upleft", -1, 1, 0, 0}, {"up", 0, 1, 0, 0},         {"upright", 1, 1, 0, 0}, {"left", -1, 0, 0, 0},
    {"right", 1, 0, 0, 0},   {"downleft", -1, -1, 0, 0}, {"down", 0, -1, 0, 0},   {"downright", 1, -1, 0, 0},
    {"irisup", 0, 0, 0, 1},  {"irisdown", 0, 0, 0, -1},  {"focusup", 0, 0, 1, 0}, {"focusdown", 0, 0, -1, 0},
};

std::string Number(float f)
{
    char szText[32];
    std::snprintf(szText, sizeof szText, "%.1f", static_cast<double>(std::round(f * 10) / 10 + 0.0F)); // no "-0.0"
    return szText;
}

std::string Capitals(std::string_view s)
{
    std::string sCapitals(s);
    std::transform(sCapitals.begin(), sCapitals.end(), sCapitals.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return sCapitals;
}

} // namespace

bool CPtzCamera::m_F_b_Command(const Query& mapQuery, double fNow)
{
    using Taker = bool (CPtzCamera::*)(const Query&, const std::string&, double);
    static constexpr std::pair<const char*, Taker> s_arTakers[] = {
        {"move", &CPtzCamera::m_F_b_Move},
        {"rzoom", &CPtzCamera::m_F_b_StepZoom},
        {"continuouspantiltmove", &CPtzCamera::m_F_b_PanTilt},
        {"continuouszoommove", &CPtzCamera::m_F_b_Zoom},
        {"gotoserverpresetno", &CPtzCamera::m_F_b_Preset},
        {"tour", &CPtzCamera::m_F_b_Tour},
        {"autopan", &CPtzCamera::m_F_b_AutoPan},
        {"autofocus", &CPtzCamera::m_F_b_AutoFocus},
        {"autoiris", &CPtzCamera::m_F_b_AutoIris},
    };
    for (const auto& [pszKey, pTaker] : s_arTakers) {
        if (const auto it = mapQuery.find(pszKey); it != mapQuery.end())
            return (this->*pTaker)(mapQuery, it->second, fNow);
    }
    return false;
}

bool CPtzCamera::m_F_b_Move(const Query& mapQuery, const std::string& sValue, double fNow)
{
    if (sValue == "home") {
        m_S_Glide({}, g_fGlideSeconds, fNow);
        return true;
    }
    const auto* pStep = std::find_if(std::begin(g_arSteps), std::end(g_arSteps),
                                     [&](const stDef_Step& stStep) { return stStep.sName == sValue; });
    if (pStep == std::end(g_arSteps))
        return false;
    const int nSpeed = Speed(mapQuery);
    const auto turn = [nSpeed](int nDirection, int& nValue, bool& bAuto) {
        if (nDirection == 0)
            return;
        nValue = std::clamp(nValue + nDirection * nSpeed * g_nLensStep, 0, 100);
        bAuto = false;
    };
    turn(pStep->nFocus, vm_nFocus, vm_bAutoFocus);
    turn(pStep->nIris, vm_nIris, vm_bAutoIris);
    const float fDegrees = g_fStepDegrees * static_cast<float>(nSpeed);
    if (pStep->fPan != 0 || pStep->fTilt != 0)
        m_S_Step({pStep->fPan * fDegrees, pStep->fTilt * fDegrees, 0}, fNow);
    return true;
}

bool CPtzCamera::m_F_b_StepZoom(const Query& mapQuery, const std::string& sValue, double fNow)
{
    const int nDirection = Whole(sValue).value_or(0);
    if (nDirection != 1 && nDirection != -1)
        return false;
    m_S_Step({0, 0, static_cast<float>(nDirection * Speed(mapQuery)) * g_fStepZoom}, fNow);
    return true;
}

// Panning and zooming at once are two commands: each leaves the other's rate as it is.
bool CPtzCamera::m_F_b_PanTilt(const Query&, const std::string& sValue, double fNow)
{
    const auto objRates = Pair(sValue, ':');
    if (!objRates)
        return false;
    if (*objRates == std::pair(0, 0))
        m_S_Freeze(fNow);
    else
        m_S_Drive({Rate(objRates->first) * g_stFullRate.fPan, Rate(objRates->second) * g_stFullRate.fTilt,
                   m_F_o_Rates().fZoom},
                  fNow);
    return true;
}

bool CPtzCamera::m_F_b_Zoom(const Query&, const std::string& sValue, double fNow)
{
    const auto objRates = Pair(sValue, ',');
    if (!objRates)
        return false;
    stDef_PtzPose stRates = m_F_o_Rates();
    stRates.fZoom = Rate(objRates->first) * g_stFullRate.fZoom;
    m_S_Drive(stRates, fNow);
    return true;
}

bool CPtzCamera::m_F_b_Preset(const Query&, const std::string& sValue, double fNow)
{
    const int nPreset = Whole(sValue).value_or(-1);
    if (nPreset < 0 || nPreset >= static_cast<int>(stDef_PtzPlaces::s_F_o_Of(vm_nChannel).arPresets.size()))
        return false;
    m_S_Glide(m_F_o_PresetPose(nPreset), g_fGlideSeconds, fNow);
    vm_nPreset = nPreset;
    return true;
}

bool CPtzCamera::m_F_b_Tour(const Query& mapQuery, const std::string& sValue, double fNow)
{
    const auto bOn = Switch(sValue);
    const int nTour = Whole(Value(mapQuery, "tournum")).value_or(-1);
    if (!bOn || nTour < 0 || nTour >= static_cast<int>(stDef_PtzPlaces::s_F_o_Of(vm_nChannel).arTours.size()))
        return false;
    if (*bOn)
        vm_stMotion = {emDef_Motion::Tour, fNow, 0, m_F_o_Pose(fNow), {}, nTour};
    else if (vm_stMotion.nTour == nTour)
        m_S_Freeze(fNow);
    return true;
}

bool CPtzCamera::m_F_b_AutoPan(const Query& mapQuery, const std::string& sValue, double fNow)
{
    const auto bOn = Switch(sValue);
    if (bOn.value_or(false))
        vm_stMotion = {emDef_Motion::Sway,
                       fNow,
                       0,
                       m_F_o_Pose(fNow),
                       {g_fSwayRate * static_cast<float>(Speed(mapQuery)), 0, 0},
                       -1};
    else if (vm_stMotion.eKind == emDef_Motion::Sway)
        m_S_Freeze(fNow);
    return bOn.has_value();
}

bool CPtzCamera::m_F_b_AutoFocus(const Query&, const std::string& sValue, double)
{
    const auto bOn = Switch(sValue);
    vm_bAutoFocus = bOn.value_or(vm_bAutoFocus);
    vm_nFocus = vm_bAutoFocus ? g_nLensMiddle : vm_nFocus;
    return bOn.has_value();
}

bool CPtzCamera::m_F_b_AutoIris(const Query&, const std::string& sValue, double)
{
    const auto bOn = Switch(sValue);
    vm_bAutoIris = bOn.value_or(vm_bAutoIris);
    vm_nIris = vm_bAutoIris ? g_nLensMiddle : vm_nIris;
    return bOn.has_value();
}

void CPtzCamera::m_S_Glide(const stDef_PtzPose& stTo, double fSeconds, double fNow)
{
    vm_stMotion = {emDef_Motion::Glide, fNow, fSeconds, m_F_o_Pose(fNow), Within(stTo), -1};
    vm_nPreset = -1;
}

// Steps that come faster than they are made add up.
void CPtzCamera::m_S_Step(const stDef_PtzPose& stStep, double fNow)
{
    const bool bGlides = vm_stMotion.eKind == emDef_Motion::Glide;
    m_S_Glide(Sum(bGlides ? vm_stMotion.stTo : m_F_o_Pose(fNow), stStep), g_fStepSeconds, fNow);
}

void CPtzCamera::m_S_Drive(const stDef_PtzPose& stRates, double fNow)
{
    vm_stMotion = {emDef_Motion::Drive, fNow, 0, m_F_o_Pose(fNow), stRates, -1};
}

void CPtzCamera::m_S_Freeze(double fNow)
{
    if (m_F_o_State(fNow).bMoving || vm_stMotion.eKind != emDef_Motion::Glide)
        m_S_Glide(m_F_o_Pose(fNow), 0, fNow);
}

stDef_PtzPose CPtzCamera::m_F_o_Rates() const
{
    return vm_stMotion.eKind == emDef_Motion::Drive ? vm_stMotion.stTo : stDef_PtzPose();
}

// The scenes of every other four channels are mirrored, and their places with them.
stDef_PtzPose CPtzCamera::m_F_o_PresetPose(int nPreset) const
{
    stDef_PtzPose stPose = stDef_PtzPlaces::s_F_o_Of(vm_nChannel).arPresets[static_cast<std::size_t>(nPreset)].stPose;
    stPose.fPan *= vm_nChannel / 4 % 2 != 0 ? -1.0F : 1.0F;
    return stPose;
}

stDef_PtzPose CPtzCamera::m_F_o_TourPose(double fPassed) const
{
    const auto& stTour = stDef_PtzPlaces::s_F_o_Of(vm_nChannel).arTours[static_cast<std::size_t>(vm_stMotion.nTour)];
    const auto stop = [&](long n) { return stTour.arStops[static_cast<std::size_t>(n % stTour.nStops)]; };
    const auto nLeg = static_cast<long>(fPassed / g_fStopSeconds);
    const stDef_PtzPose stFrom = nLeg == 0 ? vm_stMotion.stFrom : m_F_o_PresetPose(stop(nLeg - 1));
    const double fPart = (fPassed - static_cast<double>(nLeg) * g_fStopSeconds) / g_fGlideSeconds;
    return Between(stFrom, m_F_o_PresetPose(stop(nLeg)), fPart);
}

stDef_PtzPose CPtzCamera::m_F_o_Pose(double fNow) const
{
    const stDef_Motion& st = vm_stMotion;
    const double fPassed = std::max(fNow - st.fStart, 0.0);
    switch (st.eKind) {
    case emDef_Motion::Glide:
        return Between(st.stFrom, st.stTo, st.fSeconds > 0 ? fPassed / st.fSeconds : 1.0);
    case emDef_Motion::Drive:
        return Within(Sum(st.stFrom, st.stTo, static_cast<float>(fPassed)));
    case emDef_Motion::Sway: {
        const double fRound = 4.0 * static_cast<double>(g_stLimit.fPan);
        const double fAt = std::fmod(st.stFrom.fPan + g_stLimit.fPan + st.stTo.fPan * fPassed, fRound);
        const double fPan = std::min(fAt, fRound - fAt) - static_cast<double>(g_stLimit.fPan);
        return {static_cast<float>(fPan), st.stFrom.fTilt, st.stFrom.fZoom};
    }
    case emDef_Motion::Tour:
        return m_F_o_TourPose(fPassed);
    }
    return {};
}

int CPtzCamera::m_F_n_Preset(double fNow) const
{
    if (vm_stMotion.eKind != emDef_Motion::Tour)
        return vm_stMotion.eKind == emDef_Motion::Glide ? vm_nPreset : -1;
    const auto& stTour = stDef_PtzPlaces::s_F_o_Of(vm_nChannel).arTours[static_cast<std::size_t>(vm_stMotion.nTour)];
    const auto nLeg = static_cast<long>(std::max(fNow - vm_stMotion.fStart, 0.0) / g_fStopSeconds);
    return stTour.arStops[static_cast<std::size_t>(nLeg % stTour.nStops)];
}

stDef_PtzState CPtzCamera::m_F_o_State(double fNow) const
{
    constexpr double fMoment = 0.02;
    stDef_PtzState stState;
    stState.stPose = m_F_o_Pose(fNow);
    stState.nFocus = vm_nFocus;
    stState.nIris = vm_nIris;
    stState.bAutoFocus = vm_bAutoFocus;
    stState.bAutoIris = vm_bAutoIris;
    stState.bAutoPan = vm_stMotion.eKind == emDef_Motion::Sway;
    stState.bMoving = !(m_F_o_Pose(fNow + fMoment) == stState.stPose);
    stState.nPreset = m_F_n_Preset(fNow);
    stState.nTour = vm_stMotion.nTour;
    return stState;
}

std::string CPtzCamera::m_F_s_Doing(const stDef_PtzState& stState) const
{
    const stDef_PtzPlaces& stPlaces = stDef_PtzPlaces::s_F_o_Of(vm_nChannel);
    std::string sDoing;
    const auto add = [&sDoing](const std::string& sMore) { sDoing += (sDoing.empty() ? "" : " - ") + sMore; };
    if (stState.bAutoPan)
        add("AUTOPAN");
    if (stState.nTour >= 0)
        add(Capitals(stPlaces.arTours[static_cast<std::size_t>(stState.nTour)].pszName));
    if (stState.nPreset >= 0)
        add(Capitals(stPlaces.arPresets[static_cast<std::size_t>(stState.nPreset)].pszName));
    if (!stState.bAutoFocus)
        add("FOCUS " + std::to_string(stState.nFocus));
    if (!stState.bAutoIris)
        add("IRIS " + std::to_string(stState.nIris));
    return sDoing;
}

// A camera at home that does nothing is as its clip shows it, without a read-out.
stDef_PtzView CPtzCamera::m_F_o_View(double fNow) const
{
    const stDef_PtzState stState = m_F_o_State(fNow);
    const std::string sDoing = m_F_s_Doing(stState);
    if (sDoing.empty() && stState.stPose == stDef_PtzPose())
        return {};
    stDef_PtzView stView;
    stView.fX = stState.stPose.fPan * g_fUnitsPerDegree;
    stView.fY = -stState.stPose.fTilt * g_fUnitsPerDegree;
    stView.fZoom = std::exp2(stState.stPose.fZoom);
    stView.fLight = 0.4F + 0.6F * static_cast<float>(stState.nIris) / g_nLensMiddle;
    stView.nBlur = std::abs(stState.nFocus - g_nLensMiddle) * g_nFullBlur / g_nLensMiddle;
    stView.sPlace =
        "P " + Number(stState.stPose.fPan) + " T " + Number(stState.stPose.fTilt) + " Z " + Number(stView.fZoom) + "X";
    stView.sDoing = sDoing;
    return stView;
}
