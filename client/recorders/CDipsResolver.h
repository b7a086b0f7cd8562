#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <thread>

#include "fleetlink/fleetlink.h"

/// Looks recorders up in the directory service, beside the window: a look-up may take ten seconds, and the window shall
/// not wait for it. GUI thread only.
class CDipsResolver : public QObject
{
    Q_OBJECT

public:
    CDipsResolver(CEnvObj* pEnv, QObject* pParent);
    ~CDipsResolver() override; ///< waits for look-ups that run

    /// Begins a look-up of the recorder; nothing if one runs already.
    void m_S_Resolve(int nNvrID, const QByteArray& sDips);
    bool m_F_b_Runs(int nNvrID) const { return vm_mapRunning.contains(nNvrID); }

Q_SIGNALS:
    /// The look-up of `sDips` has ended; the address is empty if the service knows none. Meanwhile the recorder may be
    /// another one.
    void S_Resolved(int nNvrID, QByteArray sDips, QString sAddress, int nHttpPort);

private:
    struct stDef_LookUp
    {
        CNvrHolder pNvr;
        QByteArray sDips;
        QByteArray sAddress;
        int nPort = 80;
        std::thread objThread;
    };

    void m_S_End(int nNvrID);

    CEnvObj* vm_pEnv;
    std::map<int, std::unique_ptr<stDef_LookUp>> vm_mapRunning;
};
