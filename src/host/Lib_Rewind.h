#pragma once

/// The contract of Lib_Rewind: record transfer and record files.

#include "host/rewind/RecordTypes.h"
