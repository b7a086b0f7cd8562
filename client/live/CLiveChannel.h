#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "fleetlink/fleetlink.h"
#include "live/CLiveState.h"
#include "live/CReconnectPause.h"

/// Which stream a cell shows.
struct stDef_LiveSource
{
    int nNvrID = -1;
    int nChannel = 0; ///< from 0
    int nStream = 0;  ///< 0 main, 1 second
    QString sTitle;
};

/// A state and when it was reached.
struct stDef_StateChange
{
    emDef_LiveState nState;
    std::int64_t nAtMs; ///< ms after the connect command
};

/// One live stream: the connection object, its state in the operator's terms, and the figures of its pictures.
/// Belongs to a cell; GUI thread.
class CLiveChannel : public QObject
{
    Q_OBJECT

public:
    /// `pHost` is the window that the connection object becomes a child of.
    CLiveChannel(CEnvObj* pEnv, QWidget* pHost, const stDef_LiveSource& stSource);
    ~CLiveChannel() override; ///< ends the stream and gives the connection object back

    /// Makes the connection object. False, with the state `Unusable`, if the recorder list knows no such recorder or
    /// the record is unfit.
    bool m_F_b_Open(const stDef_NvrInit& stInit);
    /// Connects, and from now on connects again by itself after every loss, until it is told to end.
    void m_S_Connect();
    /// Ends a pause between two tries, unless the recorder said no, and begins a try anew that hangs (within 200 ms).
    void m_S_RetryNow();
    /// Tells the stream to end and returns at once.
    void m_S_RequestStop();
    /// Ends the stream and waits for it (within 200 ms; at once if it was told before).
    void m_S_Disconnect();
    /// Reads the state afresh, and connects again when a pause is over; call it some four times a second.
    void m_S_Poll();
    /// What keeps pictures from coming; counts from the next poll on.
    void m_S_SetLack(emDef_RingLack nLack) { vm_nLack = nLack; }
    /// A picture of the stream was put on the screen.
    void m_S_CountPicture();
    /// True while pictures that arrive are to be shown.
    bool m_F_b_WantsPictures() const;

    const stDef_LiveSource& m_F_o_Source() const { return vm_stSource; }
    emDef_LiveState m_F_n_State() const { return vm_nState; }
    const std::vector<stDef_StateChange>& m_F_ar_History() const { return vm_arHistory; }
    /// Time until the next try, ms; -1 while none is due.
    std::int64_t m_F_n_RetryInMs() const;
    /// Age of the picture on the screen, ms; -1 while there is none.
    std::int64_t m_F_n_PictureAgeMs() const;
    /// Pictures shown since the connect command.
    std::uint64_t m_F_n_Pictures() const { return vm_nPictures; }
    /// Time from the connect command to the first picture, ms; -1 while there is none.
    std::int64_t m_F_n_FirstPictureMs() const { return vm_nFirstPictureMs; }
    /// Pictures a second, over the last two seconds.
    double m_F_n_Rate() const;

Q_SIGNALS:
    void S_StateChanged();

private:
    void m_S_Begin();
    void m_S_PlanRetry(emDef_LiveState nEnd);
    void m_S_SetState(emDef_LiveState nState);
    emDef_LiveState m_F_n_ReadState();
    emDef_LiveState m_F_n_Pictureless(emDef_LiveState nState, bool bPlays);
    std::int64_t m_F_n_SinceConnectMs() const;

    CEnvObj* vm_pEnv;
    QWidget* vm_pHost;
    const stDef_LiveSource vm_stSource;
    CNvrHolder vm_pNvr;
    emDef_LiveState vm_nState = emDef_LiveState::Idle;
    std::vector<stDef_StateChange> vm_arHistory;
    emDef_RingLack vm_nLack = emDef_RingLack::Nothing;
    CReconnectPause vm_objPause;
    std::uint64_t vm_nRetryMs = 0;   ///< when to try again; 0: not by itself
    std::uint64_t vm_nConnectMs = 0; ///< of the command
    std::uint64_t vm_nTryMs = 0;     ///< when the running try began
    std::uint64_t vm_nPlaysMs = 0;   ///< since when the try plays without a picture; 0: it doesn't
    std::uint64_t vm_nLastPictureMs = 0;
    std::uint64_t vm_nPictures = 0;
    std::int64_t vm_nFirstPictureMs = -1;
    bool vm_bPolled = false;    ///< false once the stream has ended: its last word stays
    bool vm_bConnected = false; ///< it played since it was last connected
    std::deque<std::pair<std::uint64_t, std::uint64_t>> vm_arSamples; ///< time in ms, pictures until then
};
