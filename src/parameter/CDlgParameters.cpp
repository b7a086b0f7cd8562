#include "parameter/CDlgParameters.h"

#include <QComboBox>
#include <QLineEdit>
#include <algorithm>

#include "parameter/ParameterLists.h"
#include "toolkit/form/CFormGroup.h"

using namespace Qt::StringLiterals;
using enum emDef_ProfileStep;

namespace {

constexpr Text WithFpsText{"WithFPS", "With FPS"};
constexpr Text AsAboveText{"AsAbove", "As Above"};
constexpr Text CodecText{"Codec", "Codec"};

// Where lists and limits come from.
constexpr stDef_LimitsAt At(const char* pszPath)
{
    return {.pszPath = pszPath};
}
constexpr stDef_LimitsAt Of(emDef_LimitsNode nNode, const char* pszMin, const char* pszMax, int nMaxDefault = 0)
{
    return {.nNode = nNode, .pszMin = pszMin, .pszMax = pszMax, .nMaxDefault = nMaxDefault};
}
constexpr stDef_ListSource Range(const stDef_LimitsAt& st)
{
    return {emDef_Items::Range, st};
}
constexpr stDef_ListSource Named(const char* pszStem, const char* pszCount)
{
    return {emDef_Items::Named, At(pszStem), pszCount};
}
constexpr emDef_LimitsNode Entry = emDef_LimitsNode::Entry, LowEntry = emDef_LimitsNode::LowEntry;
constexpr stDef_LimitsAt EntryRates = Of(Entry, "MinFPS", "MaxFPS", 30);
constexpr stDef_LimitsAt LowEntryRates = Of(LowEntry, "MinFPS", "MaxFPS", 30);
constexpr stDef_LimitsAt ListRates{.pszPath = "/root/Support/Resolution", .pszMin = "MinFPS", .pszMax = "MaxFPS"};
constexpr stDef_LimitsAt MjpegRates{
    .pszPath = "/root/Support", .pszMin = "MinMjpgFPS", .pszMax = "MaxMjpgFPS", .nMaxDefault = 30};
constexpr stDef_LimitsAt MainBitrate = At("/root/Support/Bitrate_M"), LowBitrateAt = At("/root/Support/Bitrate_S");
constexpr stDef_ListSource Hundred{emDef_Items::Hundred};
constexpr stDef_ListSource Qualities = Named("/root/Support/Quality", "/root/Support/Quality");
constexpr stDef_ListSource InputRange = Range(At("/root/Support/InputGain"));
constexpr stDef_ListSource OutputRange = Range(At("/root/Support/OutputGain"));

// What a choice of another entry does. The orders and gaps are meant: ONVIF and DYNACOLOR don't go by the changed rate,
// ZAVIO keeps its bit rates, SMAX its rates.
constexpr emDef_ProfileStep StepsOnvif[] = {Fps, LowFps, Quality, Bitrate, LowStream, WithFpsClicked};
constexpr emDef_ProfileStep StepsAmtk[] = {
    Fps,       LowFps,     RateControl,        Quality,        Bitrate,
    LowStream, FpsChanged, RateControlChanged, WithFpsClicked, LowRateControlChanged};
constexpr emDef_ProfileStep StepsDynacolor[] = {
    Fps,     LowFps,     RateControl, LowRateControl,     Quality,        LowQuality,
    Bitrate, LowBitrate, LowStream,   RateControlChanged, WithFpsClicked, LowRateControlChanged};
constexpr emDef_ProfileStep StepsPixord[] = {
    Fps,        LowFps,    RateControl, LowRateControl,     Quality,        LowQuality,           Bitrate,
    LowBitrate, LowStream, FpsChanged,  RateControlChanged, WithFpsClicked, LowRateControlChanged};
constexpr emDef_ProfileStep StepsZavio[] = {Fps,
                                            LowFps,
                                            RateControl,
                                            Quality,
                                            LowStream,
                                            FpsChanged,
                                            RateControlChanged,
                                            WithFpsClicked,
                                            LowRateControlChanged};
constexpr emDef_ProfileStep StepsFiti[] = {Fps, RateControl, Bitrate, RateControlChanged};
constexpr emDef_ProfileStep StepsSmax[] = {RateControl, Bitrate, RateControlChanged};

// What follows from the chosen entry; without an attribute its place in the list.
constexpr stDef_EntryKey SizeKeys[] = {
    {"VEncoderWidth_M", "Width"}, {"VEncoderHeight_M", "Height"}, {"Format", "Codec"}};
constexpr stDef_EntryKey ProfileKeys[] = {
    {"ProfileID", "ProfileID"}, {"Format", "Codec"}, {"Resolution", "Resolution"}};
constexpr stDef_EntryKey NumberedKeys[] = {{"ProfileID", nullptr}, {"Format", "Codec"}, {"Resolution", "Resolution"}};
constexpr stDef_EntryKey PlaceKeys[] = {{"ProfileID", nullptr}, {"Resolution", "Resolution"}};
constexpr stDef_EntryKey ResolutionKeys[] = {{"Resolution", "Resolution"}};

constexpr stDef_ParameterBrand Amtk{
    .nLabel = emDef_EntryLabel::Upper,
    .nMatch = emDef_EntryMatch::Profile,
    .nLowEntry = emDef_LowEntry::Profile,
    .arEntryKeys = ProfileKeys,
    .arProfileSteps = StepsAmtk,
    .stFps = Range(EntryRates),
    .stLowFps = Range(LowEntryRates),
    .stQuality = Hundred,
    .stLowQuality = Hundred,
    .stInputGain = Hundred,
    .stOutputGain = Hundred,
    .stBitrate = Of(Entry, "MinBitrate", "MaxBitrate"),
    .stLowBitrate = Of(LowEntry, "MinBitrate", "MaxBitrate"),
    .stWithFps = WithFpsText,
};

constexpr stDef_ParameterBrand Dynacolor{
    .nLabel = emDef_EntryLabel::H264,
    .nMatch = emDef_EntryMatch::Resolution,
    .nLowEntry = emDef_LowEntry::Narrow,
    .arEntryKeys = ResolutionKeys,
    .arProfileSteps = StepsDynacolor,
    .stFps = Range(ListRates),
    .stLowFps = Range(ListRates),
    .stQuality = Range(At("/root/Support/Quality_M")),
    .stLowQuality = Range(At("/root/Support/Quality_S")),
    .stInputGain = InputRange,
    .stOutputGain = OutputRange,
    .stBitrate = MainBitrate,
    .stLowBitrate = LowBitrateAt,
    .stWithFps = WithFpsText,
};

constexpr stDef_ParameterBrand Fiti{
    .nLabel = emDef_EntryLabel::H264,
    .nMatch = emDef_EntryMatch::Resolution,
    .nLowEntry = emDef_LowEntry::None,
    .arEntryKeys = PlaceKeys,
    .arProfileSteps = StepsFiti,
    .stFps = {emDef_Items::Filtered, EntryRates},
    .stQuality = Qualities,
    .stBitrate = At("/root/Support/Bitrate"),
    .pszShownBitrate = "/root/Support/Bitrate ",
};

// The one brand where the encoder's size stands for the stream, the low bit rate goes by the limits of the main
// stream's entry, and a limit of 0 is none.
constexpr stDef_ParameterBrand Onvif{
    .nLabel = emDef_EntryLabel::CodecUpper,
    .nMatch = emDef_EntryMatch::Size,
    .nLowEntry = emDef_LowEntry::Narrow,
    .arEntryKeys = SizeKeys,
    .arProfileSteps = StepsOnvif,
    .stFps = Range(Of(Entry, "MinFPS", "MaxFPS")),
    .stLowFps = Range(LowEntryRates),
    .stQuality = Range(Of(Entry, "MinQuality", "MaxQuality")),
    .stLowQuality = Range(Of(LowEntry, "MinQuality", "MaxQuality")),
    .stBitrate = Of(Entry, "MinBitrate", "MaxBitrate"),
    .stLowBitrate = Of(Entry, "MinBitrate", "MaxBitrate"),
    .bZeroIsNoLimit = true,
    .bRateControl = false,
    .bLowRateControl = false,
    .bTwoWayAudio = false,
    .stWithFps = AsAboveText,
};

constexpr stDef_ParameterBrand Pixord{
    .nLabel = emDef_EntryLabel::CodecUpper,
    .nMatch = emDef_EntryMatch::Resolution,
    .nLowEntry = emDef_LowEntry::Narrow,
    .arEntryKeys = NumberedKeys,
    .arProfileSteps = StepsPixord,
    .stFps = Range(EntryRates),
    .stLowFps = Range(LowEntryRates),
    .stQuality = Qualities,
    .stLowQuality = Qualities,
    .stInputGain = InputRange,
    .stOutputGain = OutputRange,
    .stBitrate = MainBitrate,
    .stLowBitrate = LowBitrateAt,
    .stWithFps = WithFpsText,
};

// Nothing takes the place of the low rate in "LowBitrate" here, and that is meant.
constexpr stDef_ParameterBrand Smax{
    .nLabel = emDef_EntryLabel::H264,
    .nMatch = emDef_EntryMatch::Resolution,
    .nLowEntry = emDef_LowEntry::None,
    .arEntryKeys = PlaceKeys,
    .arProfileSteps = StepsSmax,
    .stFps = {emDef_Items::Filtered, EntryRates},
    .stLowFps = {emDef_Items::Filtered, MjpegRates},
    .stQuality = Qualities,
    .stLowQuality = Qualities,
    .stBitrate = At("/root/Support/Bitrate"),
    .bLowRateControl = false,
    .bLowBitrate = false,
    .bTwoWayAudio = false,
};

constexpr stDef_ParameterBrand Zavio{
    .nLabel = emDef_EntryLabel::CodecUpper,
    .nMatch = emDef_EntryMatch::Resolution,
    .nLowEntry = emDef_LowEntry::NarrowOrProfile,
    .arEntryKeys = NumberedKeys,
    .arProfileSteps = StepsZavio,
    .stFps = Range(EntryRates),
    .stLowFps = Range(LowEntryRates),
    .stQuality = Range(At("/root/Support/Quality")),
    .stLowQuality = Range(At("/root/Support/Quality")),
    .stInputGain = Named("/root/Support/InputGain", "/root/Support/InputGain"),
    .stOutputGain = Named("/root/Support/OutputGain", "/root/Support/OutputGain "),
    .stBitrate = MainBitrate,
    .stLowBitrate = LowBitrateAt,
    .stWithFps = WithFpsText,
};

} // namespace

CDlgParameter_AMTKV5::CDlgParameter_AMTKV5(CCamObj_Base* pCamObj) : CDlgParameter(Amtk, pCamObj) {}
CDlgParameter_AMTKV6::CDlgParameter_AMTKV6(CCamObj_Base* pCamObj) : CDlgParameter(Amtk, pCamObj) {}
CDlgParameter_DYNACOLOR::CDlgParameter_DYNACOLOR(CCamObj_Base* pCamObj) : CDlgParameter(Dynacolor, pCamObj) {}
CDlgParameter_FITI::CDlgParameter_FITI(CCamObj_Base* pCamObj) : CDlgParameter(Fiti, pCamObj) {}
CDlgParameter_ONVIF::CDlgParameter_ONVIF(CCamObj_Base* pCamObj) : CDlgParameter(Onvif, pCamObj) {}
CDlgParameter_PIXORD::CDlgParameter_PIXORD(CCamObj_Base* pCamObj) : CDlgParameter(Pixord, pCamObj) {}
CDlgParameter_SMAX::CDlgParameter_SMAX(CCamObj_Base* pCamObj) : CDlgParameter(Smax, pCamObj) {}
CDlgParameter_ZAVIO::CDlgParameter_ZAVIO(CCamObj_Base* pCamObj) : CDlgParameter(Zavio, pCamObj) {}

// The main stream of V5 starts with what its entry tells, the low one with the node's; a rate that is chosen later is
// the entry's as it stands, also out of its limits.
QString CDlgParameter_AMTKV5::m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const
{
    if (!m_F_b_IsMain(stStream) || nFill == emDef_Fill::RateControl)
        return CDlgParameter::m_F_s_BitrateShown(stStream, nFill);
    QString sBitrate = m_F_o_Abilities().m_F_s_Text(m_F_s_EntryOf(stStream), u"Bitrate"_s);
    if (nFill == emDef_Fill::Profile)
        return sBitrate;
    return QString::number(CAbilities::s_F_n_Clamp(CXmlObj::s_F_n_ToInt(sBitrate), m_F_o_BitrateLimits(stStream)));
}

// Each way of rate control has an attribute of its own; VBR has none, and leaves the edit empty, but only when the
// page or its profile is shown anew.
QString CDlgParameter_AMTKV6::m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const
{
    constexpr int Cbr = 1, Evbr = 2;
    const int nRateControl = nsParameterLists::Data(*stStream.pRateControl);
    if (nRateControl == Cbr || nRateControl == Evbr)
        return m_F_o_Abilities().m_F_s_Text(m_F_s_EntryOf(stStream),
                                            nRateControl == Cbr ? u"Bitrate"_s : u"MaxTargetBitrate"_s);
    return nFill == emDef_Fill::RateControl ? stStream.pBitrate->text() : QString();
}

namespace {

constexpr int MostCodecs = 10000;

QString AudioPath(int nCodec)
{
    return QString::asprintf("/root/Support/Audio%03d", nCodec);
}

} // namespace

int CDlgParameter_ONVIF::m_F_n_AudioCodecs() const
{
    return std::min(m_F_o_Abilities().m_F_n_Number(u"/root/Support/Audio"_s, u"Count"_s), MostCodecs);
}

QComboBox* CDlgParameter_ONVIF::m_F_p_MakeAudioCodec(CFormGroup& grp)
{
    return grp.m_F_p_List(CodecText, "AudioCodec", QStringList());
}

bool CDlgParameter_ONVIF::m_F_b_FillAudioCodec(QComboBox& objList)
{
    for (int nCodec = 0; nCodec < m_F_n_AudioCodecs(); ++nCodec) {
        const QString sPath = AudioPath(nCodec);
        objList.addItem(u"%1_%2K"_s.arg(m_F_o_Abilities().m_F_s_Text(sPath, u"Codec"_s),
                                        QString::number(m_F_o_Abilities().m_F_n_Number(sPath, u"Bitrate"_s) / 1000)));
    }
    objList.setCurrentIndex(
        std::max(0, objList.findText(m_F_s_NodeText("AudioCodec"), Qt::MatchContains | Qt::MatchCaseSensitive)));
    return objList.count() > 0;
}

// The first entry whose codec is part of the chosen label: of two entries with one codec the second saves as the
// first. That is how it is meant.
void CDlgParameter_ONVIF::m_S_StoreAudioCodec(const QComboBox& objList)
{
    for (int nCodec = 0; nCodec < m_F_n_AudioCodecs(); ++nCodec) {
        const QString sPath = AudioPath(nCodec);
        const auto Of = [&](const QString& sKey) { return m_F_o_Abilities().m_F_s_Text(sPath, sKey); };
        if (!objList.currentText().contains(Of(u"Codec"_s)))
            continue;
        m_S_Write("AudioCodec", Of(u"Codec"_s));
        m_S_Write("AudioSampleRate", Of(u"SampleRate"_s));
        m_S_Write("AudioBitrate", Of(u"Bitrate"_s));
        return;
    }
}
