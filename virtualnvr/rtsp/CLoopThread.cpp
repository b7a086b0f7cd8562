#include "rtsp/CLoopThread.h"

#include <future>
#include <glib.h>

namespace {

struct stDef_Call
{
    const std::function<void()>& work;
    std::promise<void> objDone;
};

// Always through the loop, so that it stands behind everything that was asked for before.
void Attach(GMainContext* pContext, GSourceFunc run, gpointer pData)
{
    GSource* pSource = g_idle_source_new();
    g_source_set_priority(pSource, G_PRIORITY_DEFAULT);
    g_source_set_callback(pSource, run, pData, nullptr);
    g_source_attach(pSource, pContext);
    g_source_unref(pSource);
}

} // namespace

CLoopThread::CLoopThread()
    : vm_pContext(g_main_context_new()), vm_pLoop(g_main_loop_new(vm_pContext, FALSE)), vm_objThread([this] {
          g_main_context_push_thread_default(vm_pContext);
          g_main_loop_run(vm_pLoop);
          g_main_context_pop_thread_default(vm_pContext);
      })
{}

CLoopThread::~CLoopThread()
{
    // From within the loop: a quit before it runs would be forgotten.
    Attach(
        vm_pContext,
        [](gpointer pLoop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(pLoop));
            return G_SOURCE_REMOVE;
        },
        vm_pLoop);
    vm_objThread.join();
    g_main_loop_unref(vm_pLoop);
    g_main_context_unref(vm_pContext);
}

void CLoopThread::m_S_Call(const std::function<void()>& work)
{
    stDef_Call stCall{work, {}};
    auto objAnswer = stCall.objDone.get_future();
    Attach(
        vm_pContext,
        [](gpointer pCall) -> gboolean {
            auto* pGiven = static_cast<stDef_Call*>(pCall);
            std::promise<void> objDone = std::move(pGiven->objDone); // the call is gone once it is told
            pGiven->work();
            objDone.set_value();
            return G_SOURCE_REMOVE;
        },
        &stCall);
    objAnswer.wait();
}
