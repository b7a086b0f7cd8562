#pragma once

/// The contract of Lib_Bedrock: XML document and structures in it, HTTP client, byte buffer, file, thread, string and
/// time functions, the end that is asked of a process.

#include "host/CEndRequest.h"
#include "host/Platform.h"
#include "host/bedrock/CFileRW.h"
#include "host/bedrock/CHTTP.h"
#include "host/bedrock/CMemManage.h"
#include "host/bedrock/CSFunc.h"
#include "host/bedrock/CStdThread.h"
#include "host/bedrock/CXmlObj.h"
#include "host/bedrock/MemberRows.h"
