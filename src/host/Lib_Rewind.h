#pragma once

/// The contract of Lib_Rewind: record transfer and record files. docs/record-files.md has the forms byte by byte.

#include "host/rewind/CRPBProc.h"
#include "host/rewind/CRecFunc.h"
#include "host/rewind/CRecordProfile.h"
#include "host/rewind/RecordTypes.h"
