#pragma once

#include <QString>

class CTemplateMap;

/// The way of both AMTK generations with the template.
struct AmtkTemplate
{
    /// `sBitrateKey` is where an entry tells its bit rate; empty: the bit rates stay as they are.
    static void s_S_Map(CTemplateMap& objMap, const QString& sBitrateKey);
};
