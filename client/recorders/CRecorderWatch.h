#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>

#include "recorders/CRecorderStore.h"
#include "recorders/CTcpProbe.h"
#include "recorders/emDef_Reach.h"

/// Watches whether the recorders of a list answer: one light probe each, every 10 s while it is there and every 2 s
/// while it isn't, spread over time. It never blocks.
class CRecorderWatch : public QObject
{
    Q_OBJECT

public:
    explicit CRecorderWatch(QObject* pParent = nullptr);
    ~CRecorderWatch() override;

    /// Takes over the list. What is known of a recorder stays unless its address changed.
    void m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders);
    /// Last known address of a recorder whose address comes from the directory service.
    void m_S_SetAddress(int nNvrID, const QString& sHost, int nHttpPort);
    /// Probes at once, as when a stream was lost.
    void m_S_ProbeNow(int nNvrID);
    emDef_Reach m_F_n_Reach(int nNvrID) const;

Q_SIGNALS:
    void S_Changed(int nNvrID);
    void S_Back(int nNvrID); ///< it was not there, and is there again

private:
    struct stDef_Watched;

    void m_S_Tick();
    void m_S_Begin(stDef_Watched& stWatched);
    void m_S_Done(int nNvrID, CTcpProbe::emDef_Outcome nOutcome);

    std::map<int, std::unique_ptr<stDef_Watched>> vm_mapWatched;
    QElapsedTimer vm_objClock;
    QTimer vm_objTick;
    int vm_nRunning = 0;
};
