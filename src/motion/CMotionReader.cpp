#include "motion/CMotionReader.h"

#include <charconv>
#include <chrono>
#include <utility>

namespace {

constexpr int BufferBytes = 1024;
constexpr int PauseMs = 500; ///< after a failure, so that a recorder that refuses isn't asked without end
constexpr int NoNumber = -1;

constexpr std::string_view GroupWord = "group=", MotionWord = "motion=", LineEnd = "\r\n";

/// The number that the text begins with; `NoNumber` for one that is none, or too large to be one of a window.
int NumberAt(std::string_view sText)
{
    int nNumber = NoNumber;
    const auto stResult = std::from_chars(sText.data(), sText.data() + sText.size(), nNumber);
    return stResult.ec == std::errc() ? nNumber : NoNumber;
}

} // namespace

CMotionReader::CMotionReader(std::shared_ptr<CMotionLights> pLights, Fetch fnFetch)
    : vm_pLights(std::move(pLights)), vm_fnFetch(std::move(fnFetch)), vm_memStream(BufferBytes)
{}

void CMotionReader::m_S_Run()
{
    while (!m_F_b_StopsWithin(0)) {
        vm_memStream.m_S_ZeroMem();
        const int nBytes = vm_fnFetch(vm_memStream);
        if (nBytes > 0)
            s_S_Take(vm_memStream.m_F_p_GetStrCHAR(), *vm_pLights);
        else
            m_F_b_StopsWithin(PauseMs);
    }
}

void CMotionReader::m_S_Stop()
{
    {
        const std::lock_guard lock(vm_objMutex);
        vm_bStop = true;
    }
    vm_objWake.notify_all();
}

bool CMotionReader::m_F_b_StopsWithin(int nMs)
{
    std::unique_lock lock(vm_objMutex);
    return vm_objWake.wait_for(lock, std::chrono::milliseconds(nMs), [this] { return vm_bStop; });
}

void CMotionReader::s_S_Take(std::string_view sPart, CMotionLights& objLights)
{
    std::size_t nAt = sPart.find(GroupWord);
    while (nAt != std::string_view::npos) {
        const int nGroup = NumberAt(sPart.substr(nAt + GroupWord.size()));
        nAt = sPart.find(MotionWord, nAt);
        if (nAt == std::string_view::npos)
            return;
        objLights.m_S_Set(nGroup, NumberAt(sPart.substr(nAt + MotionWord.size())) == 1);
        nAt = sPart.find(LineEnd, nAt);
        if (nAt != std::string_view::npos)
            nAt = sPart.find(GroupWord, nAt);
    }
}
