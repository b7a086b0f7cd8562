#pragma once

#include <QList>
#include <QString>

#include "fleetlink/fleetlink.h"
#include "recorders/stDef_RecorderForm.h"

/// One recorder as the list shows it. It carries no password.
struct stDef_Recorder
{
    int nNvrID = -1;
    QString sName;
    QString sAddress;
    int nType = 1; ///< 0 PC recorder, 1 embedded recorder
    int nHttpPort = 80;
    int nRtspPort = 554;
    int nChannels = 4;
    int nStreamType = 1; ///< 0 HTTP tunnel, 1 TCP, 2 UDP
    int nDstType = 0;    ///< 1: the address comes from the directory service
};

/// What an import brought.
struct stDef_ImportResult
{
    QList<int> arAdded; ///< numbers of recorders
    QList<int> arUpdated;
    QString sError; ///< empty: all went well; else nothing was changed

    QString m_F_s_Text() const; ///< how many, or the error
};

/// What adding a recorder brought.
struct stDef_AddResult
{
    int nNvrID = -1;
    QString sError; ///< empty: all went well; else nothing was changed
};

/// The recorder list `/root/NVR/N%03d` of the host's system document. A recorder keeps its number as long as it is in
/// the list, since rings, layouts and open streams go by it: a removal leaves a gap, which the next one fills, and
/// `count` stays one above the highest number.
///
/// Every change is saved at once, and taken back if that fails. Passwords go in as clear text, stand there in their
/// stored form only, and leave through `m_F_o_InitRecord`.
class CRecorderStore
{
public:
    static constexpr int MaxRecorders = 1001; ///< the library serves numbers 0 to 1000
    static constexpr int MaxChannels = 64;

    explicit CRecorderStore(CEnvObj* pEnv);

    QList<stDef_Recorder> m_F_ar_Recorders() const;

    /// What is wrong with a form; empty if it can be stored.
    static QList<stDef_FormFault> s_F_ar_Faults(const stDef_RecorderForm& stForm);
    /// Takes a recorder in under the lowest free number.
    stDef_AddResult m_F_o_Add(const stDef_RecorderForm& stForm);
    /// Changes a recorder. Returns what went wrong, empty if nothing did.
    QString m_F_s_Edit(int nNvrID, const stDef_RecorderForm& stForm);
    /// Takes a recorder and its password out. Returns what went wrong, empty if nothing did.
    QString m_F_s_Remove(int nNvrID);
    /// The stored values, without the password.
    stDef_RecorderForm m_F_o_Form(int nNvrID) const;
    /// Number of another recorder at the same address and HTTP port; -1 if there is none.
    int m_F_n_Twin(const stDef_RecorderForm& stForm, int nExceptNvrID) const;

    /// Reads the recorder cards of a file, `<root><Recorder Name="" Type="" IP="" HttpPort="" RtspPort="" UID=""
    /// ClearPWD="" Channels=""/>...</root>`, adds them or updates those of the same name, and saves the list. A card
    /// without a `ClearPWD` keeps the password that is stored. All cards are taken or none.
    stDef_ImportResult m_F_o_Import(const QString& sFile);

    /// What `CWndNvrBase::m_F_n_Init` wants of a recorder, with the password in clear: use it at once, keep it nowhere.
    stDef_NvrInit m_F_o_InitRecord(int nNvrID) const;

private:
    QString m_F_s_Apply(const QList<stDef_RecorderForm>& arForms, stDef_ImportResult& stResult);
    QString m_F_s_Write(int nNvrID, const stDef_RecorderForm& stForm);
    template <class TChange>
    QString m_F_s_Change(TChange objChange);
    bool m_F_b_Known(int nNvrID) const;
    int m_F_n_FreeNumber() const;
    int m_F_n_Count() const;

    CEnvObj* vm_pEnv;
};
