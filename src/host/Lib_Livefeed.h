#pragma once

/// The contract of Lib_Livefeed: the RTSP client and the description of one connection.

#include "host/livefeed/CRtspClient.h"
#include "host/livefeed/CRtspInfo.h"
