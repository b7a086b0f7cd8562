#include "setup/system/TimeZones.h"

#include <iterator>

namespace {

// As recorders name them, letter by letter; the place of one is its number.
constexpr const char* g_apszZones[] = {
    "GMT-14",
    "GMT-13",
    "GMT-12 (Eniwetok, Kwajalein)",
    "GMT-11 (Midway Isl., Samoa)",
    "GMT-10 (Hawaii, Aleutian Isl.)",
    "GMT-09 (Alaska)",
    "GMT-08 (Las Begas, San Francisco, Vancouver)",
    "GMT-07 (Calgary, Denver, Salt Lake City)",
    "GMT-06 (Chicago, Dallas, Mexico City, New Orleans)",
    "GMT-05 (Cuba)",
    "GMT-05 (New York, Toronto, Washington DC)",
    "GMT-04 (Paraguay)",
    "GMT-04 (Chile)",
    "GMT-04 (Charlottetown, Manaus)",
    "GMT-03:30 (Newfoundland)",
    "GMT-03 (Brazilia, Sao Paulo)",
    "GMT-02 (Noronha, Mid-Atlantic)",
    "GMT-01 (Azores, Cap Verde Isl.)",
    "GMT (Dublin, Lisbon, London, Reykjavik)",
    "GMT+01 (Amsterdam, Berlin, Rome, Stockholm, Warswa)",
    "GMT+02 (Athens, Helsinki, Istanbul, Riga)",
    "GMT+02 (Egypt)",
    "GMT+02 (Israel)",
    "GMT+02 (Lebanon)",
    "GMT+02 (Syria)",
    "GMT+03 (Moscow, Riyadh)",
    "GMT+03 (Iraq)",
    "GMT+03:30 (Iran)",
    "GMT+04 (Abu Dubai, Baku)",
    "GMT+04:30 (Kabul)",
    "GMT+05 (Islamabad, Karachi, Tashkent)",
    "GMT+05:30 (Bombay, Calcutta, New Delhi)",
    "GMT+05:45 (Kathmandu)",
    "GMT+06 (Novosibirsk, Omsk)",
    "GMT+06:30 (Rangoon)",
    "GMT+07 (Bangkok, Hanoi, Jakarta)",
    "GMT+08 (Beijing, Hong Kong, Shanghai, Singapore, Taipei)",
    "GMT+09 (Seoul, Osaka, Sapporo, Tokyo)",
    "GMT+09:30 (Darwin)",
    "GMT+09:30 (Adelaide)",
    "GMT+10 (Canberra, Melbourne, Sydney)",
    "GMT+11 (Solomon Isl.)",
    "GMT+11:30 (Norfolk)",
    "GMT+12 (Auckland, Wellington)",
    "GMT+12 (Fiji)",
    "GMT+12 (Kamchatka)",
    "GMT+12 (Marshall Isl.)",
    "GMT+13 (Tongatapu, Nuku' alofa)",
    "GMT+13:45 (Chatham)",
};

} // namespace

QList<stDef_ListItem> nsTimeZones::Items()
{
    QList<stDef_ListItem> arItems;
    for (int nZone = 0; nZone < static_cast<int>(std::size(g_apszZones)); ++nZone)
        arItems.append({QString::fromLatin1(g_apszZones[static_cast<std::size_t>(nZone)]), nZone});
    return arItems;
}
