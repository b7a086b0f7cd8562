#include "setup/schedule/stDef_RecordType.h"

#include <algorithm>

namespace {

constexpr stDef_RecordType g_aTypes[] = {
    {1, Text{"RoundTheClock", "Round The Clock"}, 0xD8A878},
    {2, Text{"MotionDetection", "Motion Detection"}, 0x69C56B},
    {3, Text{"DIDetection", "DI Detection"}, 0xD97DAF},
    {4, Text{"EventDetection", "Event Detection"}, 0x535FEC},
};
constexpr quint32 NeutralColor = 0xA0A0A0;

template <class Value>
const stDef_RecordType* Find(Value stDef_RecordType::*pMember, Value nValue)
{
    const auto* const pType = std::find_if(std::begin(g_aTypes), std::end(g_aTypes),
                                           [=](const stDef_RecordType& st) { return st.*pMember == nValue; });
    return pType == std::end(g_aTypes) ? nullptr : pType;
}

} // namespace

std::span<const stDef_RecordType> stDef_RecordType::s_F_ar_All()
{
    return g_aTypes;
}

const stDef_RecordType* stDef_RecordType::s_F_p_Of(int nMode)
{
    return Find(&stDef_RecordType::nMode, nMode);
}

const stDef_RecordType* stDef_RecordType::s_F_p_OfColor(quint32 nColor)
{
    return Find(&stDef_RecordType::nColor, nColor);
}

quint32 stDef_RecordType::s_F_n_ColorOf(int nMode)
{
    const stDef_RecordType* const pType = s_F_p_Of(nMode);
    return pType ? pType->nColor : NeutralColor;
}
