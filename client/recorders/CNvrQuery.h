#pragma once

#include <QObject>
#include <functional>
#include <thread>

#include "fleetlink/fleetlink.h"

/// Asks a recorder something beside the window, on a connection object and a thread of its own. Deleting it ends the
/// question at once. GUI thread only.
class CNvrQuery : public QObject
{
    Q_OBJECT

public:
    /// `fnAsk` is called on the thread and may use the object's requests only.
    CNvrQuery(CEnvObj* pEnv, stDef_NvrInit stInit, std::function<void(CWndNvrBase&)> fnAsk, QObject* pParent = nullptr);
    ~CNvrQuery() override;

    /// Makes an object of the recorder for requests, the stored target set; null if its entry in the list is unfit.
    static CNvrHolder s_F_p_MakeObject(CEnvObj* pEnv, stDef_NvrInit stInit);

Q_SIGNALS:
    void S_Done(); ///< also where no object could be made, without having asked

private:
    const CNvrHolder vm_pNvr;
    std::thread vm_objThread;
};
