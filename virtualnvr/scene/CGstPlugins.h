#pragma once

#include <string>

/// The GStreamer plug-ins that streams and recordings take. They are loaded by name, without GStreamer's registry: the
/// scan of all that is installed would take seconds at the first start on a machine.
class CGstPlugins
{
public:
    /// Sets GStreamer up, once in a process. From any thread.
    /// @return false with sError naming what is missing and the package that has it
    static bool s_F_b_Load(std::string& sError);
};
