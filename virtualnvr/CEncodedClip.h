#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// A stream's pictures, encoded once: H.264 access units that play in a loop.
struct stDef_EncodedClip
{
    static constexpr int s_nFps = 15;
    static constexpr int s_nFrames = 90;
    static constexpr int s_nGop = 8; ///< a client that joins waits for half a second at most

    struct stDef_Unit
    {
        std::vector<std::uint8_t> arBytes; ///< Annex B, with parameter sets before each key frame
        bool bKey = false;
    };

    std::vector<stDef_Unit> arUnits; ///< begins with a key frame
    int nWidth = 0;
    int nHeight = 0;
};

/// The clips of all streams, each encoded when it is first asked for. Thread-safe.
class CClipLibrary
{
public:
    /// Null if it can't be encoded.
    std::shared_ptr<const stDef_EncodedClip> m_F_p_Get(int nChannel, bool bSecond);
    /// Empty if all that encoding takes is there, else what is missing and where it comes from.
    static std::string s_F_s_Missing();

private:
    struct stDef_Slot
    {
        std::mutex objMutex; ///< held while the clip is encoded
        std::shared_ptr<const stDef_EncodedClip> pClip;
    };

    std::mutex vm_objMutex;
    std::map<std::pair<int, bool>, std::unique_ptr<stDef_Slot>> vm_mapSlots;
};
