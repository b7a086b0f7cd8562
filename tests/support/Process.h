#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // the compiler brings no header for it
#else
#include <malloc.h>
#endif

/// What this process holds at present, and how much slower it is for the tool that watches it.
namespace Process {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int Slowness = 5; ///< factor on time bounds
inline constexpr int Weight = 6; ///< factor on memory bounds: shadow memory, and freed blocks that are kept for a while
#else
inline constexpr int Slowness = 1;
inline constexpr int Weight = 1;
#endif

/// Qt's own threads, which paint large windows, hold locks that the thread sanitizer can't see.
#if defined(__SANITIZE_THREAD__)
inline constexpr bool CanPaintMuch = false;
#else
inline constexpr bool CanPaintMuch = true;
#endif

/// A number of /proc/self/status, such as "VmRSS" (in KiB) or "Threads"; 0 if there is none.
inline long Status(const std::string& sKey)
{
    std::ifstream file("/proc/self/status");
    for (std::string sLine; std::getline(file, sLine);)
        if (sLine.starts_with(sKey + ':'))
            return std::stol(sLine.substr(sKey.size() + 1));
    return 0;
}

/// Memory in use. A sanitizer keeps freed blocks for a while, so there it is what is allocated.
inline long MemoryKiB()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return static_cast<long>(__sanitizer_get_current_allocated_bytes() >> 10);
#else
    malloc_trim(0);
    return Status("VmRSS");
#endif
}

/// Makes the peak of the memory ("VmHWM") begin anew with what is in use now.
inline void ForgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

inline long Descriptors()
{
    return static_cast<long>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

/// Names of the instance in shared memory: rings, and the recorder list.
inline long SharedNames(const std::string& sInstance)
{
    const std::filesystem::directory_iterator names("/dev/shm");
    return std::count_if(begin(names), end(names), [&sInstance](const auto& entry) {
        return entry.path().filename().string().find(sInstance) != std::string::npos;
    });
}

} // namespace Process
