#pragma once

#include <QList>
#include <QString>

#include "core/stDef_NvrInit.h"
#include "host/Lib_Hostenv.h"

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
};

/// What an import brought.
struct stDef_ImportResult
{
    int nAdded = 0;
    int nUpdated = 0;
    QString sError; ///< empty: all went well; else nothing was changed
};

/// The recorder list `/root/NVR/N%03d` of the host's system document: numbered from 0 without gaps, with a `count`.
/// Passwords go in as clear text, stand there in their stored form only, and leave through `m_F_o_InitRecord`.
class CRecorderStore
{
public:
    static constexpr int MaxRecorders = 1001; ///< the library serves numbers 0 to 1000
    static constexpr int MaxChannels = 64;

    explicit CRecorderStore(CEnvObj* pEnv);

    QList<stDef_Recorder> m_F_ar_Recorders() const;

    /// Reads the recorder cards of a file, `<root><Recorder Name="" Type="" IP="" HttpPort="" RtspPort="" UID=""
    /// ClearPWD="" Channels=""/>...</root>`, adds them or updates those of the same name, and saves the list. A card
    /// without a `ClearPWD` keeps the password that is stored. All cards are taken or none.
    stDef_ImportResult m_F_o_Import(const QString& sFile);

    /// What `CWndNvrBase::m_F_n_Init` wants of a recorder, with the password in clear: use it at once, keep it nowhere.
    stDef_NvrInit m_F_o_InitRecord(int nNvrID) const;

private:
    struct stDef_Card;

    static QString s_F_s_ReadCard(const CXmlNode& objNode, stDef_Card& stCard);
    QString m_F_s_Apply(const QList<stDef_Card>& arCards, stDef_ImportResult& stResult);
    QString m_F_s_Write(int nNvrID, const stDef_Card& stCard);
    int m_F_n_Count() const;

    CEnvObj* vm_pEnv;
};
