#pragma once

/// Fleetlink: the recorder plug-in of a CMS client. One include for the exported API and the contracts it is built on.
///
/// A host's road: fill `CAppEnv::s_objEnv` (or a `CEnvObj` of its own), make an object a stream with
/// `CWndNvrBase::s_F_p_CreateNvrObjectByNvrID`, which a `CNvrHolder` holds, call `m_F_n_Init`, `m_S_Connect`, poll
/// `m_F_n_GetConnectStat`, read the pictures with `CShmRingReader`, and reset the holder.

#include "core/CNvrHolder.h"
#include "core/CWndNvrEmbedded.h"
#include "core/CWndNvrPC.h"
#include "core/CommandNumbers.h"
#include "core/DocumentTable.h"
#include "core/backup/RecordBackupRun.h"
#include "host/Lib_Bedrock.h"
#include "host/Lib_Hostenv.h"
#include "host/Lib_Livefeed.h"
#include "host/Lib_Rewind.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"
#include "toolkit/user/CWaitCursor.h"
