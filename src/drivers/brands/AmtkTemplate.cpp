#include "drivers/brands/AmtkTemplate.h"

#include "drivers/CTemplateMap.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t Support[] = u"/root/Support";

/// What an entry gives to one stream.
void TakeStream(CTemplateMap& objMap, int nEntry, const QString& sRateKey, const QString& sBitrateKey,
                const QString& sEntryBitrateKey)
{
    const QString sEntry = CAbilities::s_F_s_Entry(nEntry);
    if (!sEntryBitrateKey.isEmpty())
        objMap.m_S_Set(sBitrateKey, objMap.m_F_o_Abilities().m_F_n_Number(sEntry, sEntryBitrateKey));
    objMap.m_S_Set(sRateKey, CAbilities::s_F_n_ClampRate(objMap.m_F_o_Wanted().nFPS,
                                                         objMap.m_F_o_Abilities().m_F_o_RateLimits(sEntry)));
}

} // namespace

// The main stream is the first entry that fits, the low one the first with the default profile; one entry may be both.
void AmtkTemplate::s_S_Map(CTemplateMap& objMap, const QString& sBitrateKey)
{
    const int nDefault = objMap.m_F_o_Abilities().m_F_n_Number(QString::fromUtf16(Support), u"DefaultID"_s);
    objMap.m_S_Set(u"DefaultProfileID"_s, nDefault);
    const int nEntries = objMap.m_F_o_Abilities().m_F_n_Entries();
    bool bMain = false, bLow = false;
    for (int nEntry = 0; nEntry < nEntries && !(bMain && bLow); ++nEntry) {
        const int nProfile = objMap.m_F_o_Abilities().m_F_n_Number(CAbilities::s_F_s_Entry(nEntry), u"ProfileID"_s);
        if (!bMain && objMap.m_F_b_Fits(nEntry)) {
            bMain = true;
            objMap.m_S_Set(u"ProfileID"_s, nProfile);
            objMap.m_S_Take(nEntry, u"Codec"_s, u"Format"_s);
            objMap.m_S_Take(nEntry, u"Resolution"_s, u"Resolution"_s);
            TakeStream(objMap, nEntry, u"FPS"_s, u"Bitrate"_s, sBitrateKey);
        }
        if (!bLow && nProfile == nDefault) {
            bLow = true;
            TakeStream(objMap, nEntry, u"LowFPS"_s, u"LowBitrate"_s, sBitrateKey);
        }
    }
    objMap.m_S_Set(u"Compression"_s, objMap.m_F_o_Wanted().nQuality); // not limited
    objMap.m_S_Set(u"LowCompression"_s, objMap.m_F_o_Wanted().nQuality);
    objMap.m_S_SetRateControl(CTemplateMap::emDef_Streams::Both);
}
