#pragma once

#include <functional>
#include <thread>

typedef struct _GMainContext GMainContext;
typedef struct _GMainLoop GMainLoop;

/// A thread that runs a GLib main context of its own.
class CLoopThread
{
public:
    CLoopThread();
    ~CLoopThread(); ///< joins the thread
    CLoopThread(const CLoopThread&) = delete;
    CLoopThread& operator=(const CLoopThread&) = delete;

    GMainContext* m_F_p_Context() const { return vm_pContext; }

    /// Does the work on the thread and returns when it is done. Never from the thread itself.
    void m_S_Call(const std::function<void()>& work);

private:
    GMainContext* vm_pContext;
    GMainLoop* vm_pLoop;
    std::thread vm_objThread;
};
