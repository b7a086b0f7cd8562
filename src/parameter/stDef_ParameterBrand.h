#pragma once

#include <span>

#include "toolkit/form/CTextSource.h"

/// Whose attributes a minimum and a maximum are, in what a camera can do.
enum class emDef_LimitsNode
{
    Path,
    Entry,   ///< the chosen entry of the resolution list
    LowEntry ///< the one that stands for the low stream
};

struct stDef_LimitsAt
{
    emDef_LimitsNode nNode = emDef_LimitsNode::Path;
    const char* pszPath = ""; ///< passed on as it stands, with the blank that some have at their end
    const char* pszMin = "Min";
    const char* pszMax = "Max";
    int nMaxDefault = 0; ///< of a missing maximum; a missing minimum is 0
};

enum class emDef_Items
{
    None,     ///< the page has no such list
    Range,    ///< every number within limits
    Filtered, ///< those numbers of `/root/Support` `FPS` that are within limits
    Named,    ///< names in numbered nodes, with their places behind them
    Hundred   ///< 1 to 100: chosen by value - 1, saved as place + 1
};

/// What a list offers.
struct stDef_ListSource
{
    emDef_Items nItems = emDef_Items::None;
    stDef_LimitsAt stLimits = {}; ///< of numbers; the path of a named list stands here, too
    const char* pszCount = "";    ///< node with the `Count` of a named list
};

/// A key of the camera's node that follows from the chosen entry.
struct stDef_EntryKey
{
    const char* pszKey;
    const char* pszFrom; ///< attribute of the entry; null for the place of the entry
};

/// How an entry of the resolution list is shown.
enum class emDef_EntryLabel
{
    Upper,      ///< codec and resolution in capitals
    CodecUpper, ///< the codec alone in capitals
    H264        ///< an entry that tells no codec
};

/// By what the camera's node finds its entry; of several the last one counts.
enum class emDef_EntryMatch
{
    Size,
    Profile,
    Resolution
};

/// Which entry stands for the low stream.
enum class emDef_LowEntry
{
    None,
    Narrow,          ///< the first below 641 pixels
    NarrowOrProfile, ///< the same, or the number of the node's default profile where none is so narrow
    Profile          ///< that of the node's default profile
};

/// What a choice of another entry does, in the order in which a brand names it. All values come from the camera's node
/// again: what was chosen before, but not stored, is lost.
enum class emDef_ProfileStep
{
    Fps,
    LowFps, ///< chosen anew; its list stays
    RateControl,
    LowRateControl,
    Quality,
    LowQuality,
    Bitrate,
    LowBitrate,
    LowStream, ///< enables it where it can differ
    // What the handlers of these do:
    FpsChanged,
    RateControlChanged,
    WithFpsClicked,
    LowRateControlChanged
};

/// In what the parameter page of one brand differs from that of another. What a page doesn't show, it doesn't write.
struct stDef_ParameterBrand
{
    emDef_EntryLabel nLabel;
    emDef_EntryMatch nMatch;
    emDef_LowEntry nLowEntry;
    std::span<const stDef_EntryKey> arEntryKeys;
    std::span<const emDef_ProfileStep> arProfileSteps;

    stDef_ListSource stFps;
    stDef_ListSource stLowFps = {};
    stDef_ListSource stQuality;
    stDef_ListSource stLowQuality = {};
    stDef_ListSource stInputGain = {}, stOutputGain = {};

    stDef_LimitsAt stBitrate;
    const char* pszShownBitrate = nullptr; ///< path of the limits that fill the edit, where it is written otherwise
    stDef_LimitsAt stLowBitrate = {};
    bool bZeroIsNoLimit = false; ///< and the limits stand in the message, but not in the label

    bool bRateControl = true, bLowRateControl = true, bLowBitrate = true, bTwoWayAudio = true;
    Text stWithFps = {nullptr, nullptr}; ///< no text: no box
};
