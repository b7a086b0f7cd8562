#pragma once

#include <QString>

#include "host/Export.h"

/// Stored form of recorder passwords: AES-256-GCM under a key file in the user's configuration folder, which is made at
/// first use and readable by the user alone.
class LIB_HOSTENV_EXPORT CWinAES_CMS
{
public:
    /// Stored form in, clear text out; empty for text that is no stored form of this user.
    static QString s_F_s_Decrypt(const QString& sStored);
    /// Clear text in, stored form out (printable ASCII); a different one each time. Empty if there is no key file and
    /// none can be made.
    static QString s_F_s_Encrypt(const QString& sClear);
    /// Folder of the key file; by default the configuration folder of `CAppEnv::s_objEnv`. For tools and tests.
    static void s_S_SetKeyFolder(const QString& sFolder);
};
