#include "host/livefeed/CAvLog.h"

#include <cstdarg>
#include <mutex>

extern "C" {
#include <libavutil/log.h>
}

namespace {

thread_local bool g_bMuted = false;

void Filter(void* pContext, int nLevel, const char* pFormat, va_list arArgs)
{
    if (!g_bMuted)
        av_log_default_callback(pContext, nLevel, pFormat, arArgs);
}

} // namespace

void CAvLog::s_S_MuteThread()
{
    static std::once_flag s_objOnce;
    std::call_once(s_objOnce, [] { av_log_set_callback(Filter); });
    g_bMuted = true;
}
