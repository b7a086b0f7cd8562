#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

#include "host/Lib_Bedrock.h"
#include "motion/CMotionLights.h"

/// Follows a recorder's motion stream on a thread of its own, and knows no window. What it shares is held in common, so
/// that neither side has to outlive the other.
class CMotionReader
{
public:
    /// Reads one part of the stream into the buffer, up to its size; more than 0 is its length. Called on the reader's
    /// thread.
    using Fetch = std::function<int(CMemManage& memPart)>;

    CMotionReader(std::shared_ptr<CMotionLights> pLights, Fetch fnFetch);

    /// Part by part until it is told to stop; after a part that failed it waits 500 ms.
    void m_S_Run();
    /// Ends `m_S_Run` as soon as a part that is being fetched has come or failed. Any thread.
    void m_S_Stop();

    /// Takes the lines of a part, "group=" with the position of a window and "motion=" with 1 where something moves.
    /// What is cut, or makes no sense, is left out.
    static void s_S_Take(std::string_view sPart, CMotionLights& objLights);

private:
    bool m_F_b_StopsWithin(int nMs);

    std::shared_ptr<CMotionLights> vm_pLights;
    Fetch vm_fnFetch;
    CMemManage vm_memStream;
    std::mutex vm_objMutex;
    std::condition_variable vm_objWake;
    bool vm_bStop = false; ///< under the mutex
};
