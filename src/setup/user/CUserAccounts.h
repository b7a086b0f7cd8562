#pragma once

#include <QMap>
#include <array>

#include "toolkit/form/CNumberedNodes.h"

/// What an account's strings of rights are called.
enum class emDef_Rights
{
    Preview,  ///< live view, a character for each camera
    Playback, ///< the same of recordings
    Capability
};

/// The accounts of a recorder's System document, numbered from 0, which is the administrator. The document is borrowed;
/// a closed one has no account and takes no change.
class CUserAccounts
{
public:
    static constexpr int Administrator = 0;
    static constexpr std::array AllRights = {emDef_Rights::Preview, emDef_Rights::Playback, emDef_Rights::Capability};

    /// Which positions of a string of rights are "1", and which "0"; all others stay as they are.
    using Marks = QMap<int, bool>;
    using Rights = std::array<Marks, AllRights.size()>;

    explicit CUserAccounts(CXmlObj* pSystem);

    bool m_F_b_IsOpen() const;
    /// 1 where the document doesn't say.
    int m_F_n_Count() const { return vm_objNodes.m_F_n_Count(); }
    QString m_F_s_Path(int nAccount) const { return vm_objNodes.m_F_s_Path(nAccount); }
    QString m_F_s_Value(int nAccount, const char* pszKey) const;
    QString m_F_s_Rights(int nAccount, emDef_Rights nRights) const;

    /// Counts the account that was written behind the last one, and gives it rights: those of the account before it,
    /// so that its masks are as long, with the marks in them.
    void m_S_Append(const Rights& arMarks);
    void m_S_SetRights(int nAccount, const Rights& arMarks) { m_S_WriteRights(nAccount, nAccount, arMarks); }
    /// Removes an account; those behind it move down by one.
    void m_S_Remove(int nAccount) { vm_objNodes.m_S_Remove(nAccount); }

private:
    void m_S_WriteRights(int nAccount, int nModel, const Rights& arMarks);

    CXmlObj* vm_pSystem;
    CNumberedNodes vm_objNodes;
};
