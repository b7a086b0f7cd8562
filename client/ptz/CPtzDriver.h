#pragma once

#include <QObject>
#include <map>
#include <memory>

#include "live/stDef_ChannelKey.h"
#include "ptz/CPtzAction.h"
#include "ptz/CPtzSender.h"

class CEnvObj;
class CRecorderStore;

/// Drives one camera at a time: adds up what is held of buttons and keys to one movement, and sees that each movement
/// that went out is stopped. GUI thread only; nothing blocks, but for the destructor.
class CPtzDriver : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxSpeed = 10;

    /// Both are borrowed.
    CPtzDriver(CEnvObj* pEnv, const CRecorderStore* pStore, QObject* pParent = nullptr);
    ~CPtzDriver() override; ///< stops the camera; waits for that 6 s at most, usually not at all

    /// The camera that is driven from now on; the one before is stopped. A number of -1 is none.
    void m_S_SetChannel(const stDef_ChannelKey& stKey);
    const stDef_ChannelKey& m_F_o_Channel() const { return vm_stKey; }
    /// The recorder's entry in the list may have changed.
    void m_S_Renew();
    /// 1 to 10; a movement that goes on takes it over.
    void m_S_SetSpeed(int nSpeed);
    int m_F_n_Speed() const { return vm_nSpeed; }

    /// A source (a button, a key) holds a movement, in place of what it held before.
    void m_S_Hold(int nSource, const stDef_PtzAction& stAction);
    void m_S_Let(int nSource);
    /// All sources let go.
    void m_S_StopAll();
    /// A command that is no movement; with the speed where it takes one.
    void m_S_Once(int nCmd);
    void m_S_Once(int nCmd, int nParam);

    int m_F_n_Pan() const { return vm_nPan; }   ///< -1, 0 or 1: what is held altogether
    int m_F_n_Tilt() const { return vm_nTilt; } ///< likewise

Q_SIGNALS:
    void S_Moved();             ///< another movement, or none
    void S_Result(int nResult); ///< of the last command; negative is a `CHTTP::emDef_Result`

private:
    void m_S_Update();
    void m_S_Send(stDef_PtzOrder stOrder);
    bool m_F_b_MakeSender();

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    stDef_ChannelKey vm_stKey;
    std::map<int, const stDef_PtzAction*> vm_mapHeld; ///< by source
    int vm_nSpeed = 5;
    int vm_nPan = 0;
    int vm_nTilt = 0;
    int vm_nZoom = 0;
    int vm_nSender = 0;                                      ///< number of the sender
    std::unique_ptr<CPtzSender> vm_pSender;                  ///< made for the first command
    std::map<int, std::unique_ptr<CPtzSender>> vm_mapEnding; ///< those of recorders driven before, by number
};
