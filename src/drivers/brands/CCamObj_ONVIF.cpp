#include "drivers/CTemplateMap.h"
#include "drivers/brands/Drivers.h"
#include "drivers/stDef_DriverRow.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;
using emDef_Streams = CTemplateMap::emDef_Streams;

namespace {

constexpr const char* Ptz[] = {"PTZToken",       "Pan_Range_Max",  "Pan_Range_Min", "Zoom_Range_Max",
                               "Zoom_Range_Min", "Tilt_Range_Max", "Tilt_Range_Min"};
constexpr const char* Encoders[] = {"VEncoderToken_M", "VEncoderToken_S", "AudioCodec",       "AudioSampleRate",
                                    "AudioBitrate",    "AudioEncToken",   "ProfileToken_M",   "ProfileToken_S",
                                    "VEncoderWidth_M", "VEncoderWidth_S", "VEncoderHeight_M", "VEncoderHeight_S"};

// The resolution comes from the template alone, and a copy has none.
constexpr nsDriverKeys::Group g_arGroups[] = {nsDriverKeys::Address,
                                              nsDriverKeys::OnvifAuth,
                                              nsDriverKeys::Device,
                                              nsDriverKeys::Format,
                                              nsDriverKeys::Main,
                                              nsDriverKeys::Low,
                                              nsDriverKeys::LowBitrate,
                                              Ptz,
                                              Encoders};
constexpr stDef_DriverRow g_stRow{g_arGroups};

} // namespace

CCamObj_ONVIF::CCamObj_ONVIF() : CCamObj_Base(g_stRow) {}

// Width and height are asked of the detect reply, under a path that the answer then replaces, and the limits under what
// the path has become. It is meant so: a detect reply has no resolution list, so both come out empty and all limits 0,
// and the parameter page raises what follows from them when it is opened. The template's rate control isn't used.
void CCamObj_ONVIF::m_S_MapTemplate(CTemplateMap& objMap) const
{
    const auto nPick = objMap.m_F_o_Pick();
    if (!nPick)
        return;
    objMap.m_S_Take(*nPick, u"Codec"_s, u"Format"_s);
    objMap.m_S_Take(*nPick, u"Resolution"_s, u"Resolution"_s);
    QString sPath = CAbilities::s_F_s_Entry(*nPick);
    for (const auto& [sKey, sTarget] :
         {std::pair{u"Width"_s, u"VEncoderWidth_M"_s}, {u"Height"_s, u"VEncoderHeight_M"_s}}) {
        const QString sValue = objMap.m_F_o_Detect().m_F_s_Value(sPath, sKey);
        objMap.m_S_Set(sTarget, sValue);
        sPath = sValue;
    }
    objMap.m_S_SetRate(sPath, emDef_Streams::Both);
    objMap.m_S_SetQuality(objMap.m_F_o_Abilities().m_F_o_Limits(sPath, u"MinQuality"_s, u"MaxQuality"_s),
                          emDef_Streams::Both);
}
