#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

#include "host/Export.h"
#include "host/bedrock/CXmlObj.h"
#include "host/hostenv/nsCMS.h"

/// The environment that a host hands to the library: configuration folder, recorder list, language, system record.
/// The first group is what the library calls, the second what a host calls to set it up. GUI thread only.
class LIB_HOSTENV_EXPORT CEnvObj
{
public:
    CEnvObj();
    ~CEnvObj();
    CEnvObj(const CEnvObj&) = delete;
    CEnvObj& operator=(const CEnvObj&) = delete;

    /// The host's in-memory system document with the recorder list `/root/NVR/N%03d`. Never null; owned by this object.
    CXmlObj* m_F_p_GetMemSysXML();
    /// The shared system record; never null, and good until the next `m_F_b_Init`. The first who asks with `bCreate`
    /// owns it; everybody else (`bCreate` false only looks) sees it, but what he writes stays his own. Without one it
    /// is this object's own.
    nsCMS::stDef_SYS_INFO* m_F_p_GetShmSystem(bool bCreate);
    /// The user's configuration folder, ending with a path separator.
    QString m_F_s_GetConfigFolder() const;
    /// Text of the key in the host's own language file, or the default. Returns 1 if the file has the key, else 0.
    int m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const;

    int vm_nLanguage = 1; ///< language index of the running client: 0 Traditional Chinese, 1 English

    /// Sets folder and system document (`System.xml` in the folder; a new one if there is none). The folder is made if
    /// needed, readable by the user alone. A damaged document is kept aside as `System.damaged.xml` (or with a number,
    /// `System.damaged.2.xml`), and a new one begun. False if folder or document can't be made, read or written; the
    /// object stays as it was.
    bool m_F_b_Init(const QString& sConfigFolder);
    /// Where the last successful `m_F_b_Init` kept a damaged document; empty if it found none.
    QString m_F_s_DamagedSysXML() const;
    /// Writes the system document back, by a temporary file that takes its place at once.
    bool m_F_b_SaveSysXML();
    /// Stores the folder of the language files in the system record; a separator is appended if there is none. False if
    /// it is longer than the record holds (266 UTF-16 units with the separator).
    bool m_F_b_SetLangFolder(const QString& sFolder);
    /// The folder of the language files as the system record has it.
    QString m_F_s_GetLangFolder();
    /// Name that keeps the shared memory of hosts apart: the one that was given, else made of the configuration folder,
    /// however its path is written; "cms" while there is no folder.
    QByteArray m_F_s_Instance() const;
    /// Loads the host's own language file for `m_F_n_LoadString`.
    bool m_F_b_LoadHostLanguage(const QString& sFile);

    /// Gives all environments of this process one instance: letters, digits, '-' and '_', at most 64; empty takes it
    /// back. Default: the environment variable FLEETLINK_INSTANCE. Set it before the first ring or record is made.
    static void s_S_SetInstance(const QByteArray& sInstance);
    /// Instance of the process-wide environment.
    static QByteArray s_F_s_Instance();
    /// Instance of hosts on that configuration folder, which has to exist, if none is given.
    static QByteArray s_F_s_InstanceOf(const QString& sConfigFolder);
    /// Removes what killed processes of this user left in shared memory: of the instance that was given, else of all
    /// configuration folders. Returns how many names.
    static int s_F_n_RemoveStaleShm();

private:
    void m_S_MoveTo(const QByteArray& sInstance);

    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};

/// Holder of the process-wide environment.
class LIB_HOSTENV_EXPORT CAppEnv
{
public:
    static CEnvObj s_objEnv;
};
