#pragma once

#include "core/CRtspInfo_CMS.h"
#include "host/Lib_Hostenv.h"
#include "host/Lib_Livefeed.h"

/// The live stream of a connection object, in one allocation. The client comes first, so that a pointer to the stream
/// is a pointer to the client; it goes last, so end its thread before the rings and the info are destroyed.
struct stDef_RtspStream
{
    CRtspClient vm_objClient;
    CRtspInfo_CMS vm_objInfo;
    CShmEncVideo_CMS vm_objShmVideo{-1, -1, 0, false};
    CShmEncAudio_CMS vm_objShmAudio{-1, -1, 0, false};
};
