#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "fleetlink/fleetlink.h"
#include "ptz/CPtzQueue.h"

/// Sends PTZ commands to one recorder on a thread of its own, in order, so that a recorder that doesn't answer holds up
/// nobody but its next command. GUI thread only.
class CPtzSender
{
public:
    /// The object has its target set. `fnResult` is called on the sender's thread after each command
    /// but a stop that went well, with the result of its request (`CHTTP::emDef_Result` if negative), `fnEnd` at the
    /// end of the thread.
    CPtzSender(CNvrHolder pNvr, std::function<void(int nResult)> fnResult, std::function<void()> fnEnd);
    ~CPtzSender(); ///< closes in haste, and waits for the stops to be sent: 2 s each at most
    CPtzSender(const CPtzSender&) = delete;
    CPtzSender& operator=(const CPtzSender&) = delete;

    void m_S_Add(const stDef_PtzOrder& stOrder);
    /// Sends the stops that are due, drops the rest and ends its thread; returns at once. In haste, a stop that finds
    /// no answer doesn't go again.
    void m_S_Close(bool bHaste = false);

private:
    void m_S_Run();
    void m_S_OnUnheard(std::unique_lock<std::mutex>& objLock, const stDef_PtzOrder& stOrder, int nResult);
    int m_F_n_Send(const stDef_PtzOrder& stOrder);

    const CNvrHolder vm_pNvr;
    const std::function<void(int)> vm_fnResult;
    const std::function<void()> vm_fnEnd;
    std::mutex vm_objMutex;
    std::condition_variable vm_objWake;
    CPtzQueue vm_objQueue;
    bool vm_bClosing = false;
    bool vm_bHaste = false;
    std::thread vm_objThread; // last: it uses all of the above
};
