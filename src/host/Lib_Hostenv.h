#pragma once

/// The contract of Lib_Hostenv: host environment, language files, shared-memory stream rings, stored passwords.

#include "host/hostenv/CEnvObj.h"
#include "host/hostenv/CLangXMLObj.h"
#include "host/hostenv/CShmEnc.h"
#include "host/hostenv/CShmRingReader.h"
#include "host/hostenv/CWinAES_CMS.h"
#include "host/hostenv/RingCodecs.h"
#include "host/hostenv/nsCMS.h"
