#pragma once

#include <QString>

#include "drivers/DriverKeys.h"

class CTemplateMap;

/// What both AMTK generations have in common: their keys, and their way with the template.
struct AmtkTemplate
{
    static constexpr nsDriverKeys::Group s_arGroups[] = {
        nsDriverKeys::Address,      nsDriverKeys::Device,    nsDriverKeys::Profile,    nsDriverKeys::LowProfile,
        nsDriverKeys::ProfileNames, nsDriverKeys::Format,    nsDriverKeys::Resolution, nsDriverKeys::Main,
        nsDriverKeys::Low,          nsDriverKeys::LowBitrate};

    /// `sBitrateKey` is where an entry tells its bit rate; empty: the bit rates stay as they are.
    static void s_S_Map(CTemplateMap& objMap, const QString& sBitrateKey);
};
