#pragma once

#include <QMap>
#include <QString>

class CXmlObj;

/// What an account's strings of rights are called.
enum class emDef_Rights
{
    Preview,  ///< live view, a character for each camera
    Playback, ///< the same of recordings
    Capability
};

/// The rights of the accounts of a recorder's System document, by the account's number: strings of "0" and "1". The
/// document is borrowed; a closed one has no rights and takes none.
class CUserRights
{
public:
    static constexpr int Administrator = 0;

    explicit CUserRights(CXmlObj* pSystem) : vm_pSystem(pSystem) {}

    QString m_F_s_Of(int nAccount, emDef_Rights nRights) const;
    /// Gives an account the rights of `nModel`, which may be itself, with these positions on or off. A position that
    /// the model doesn't have is not made: the length is the recorder's matter.
    void m_S_Write(int nAccount, int nModel, emDef_Rights nRights, const QMap<int, bool>& mapMarks);

private:
    CXmlObj* vm_pSystem;
};
