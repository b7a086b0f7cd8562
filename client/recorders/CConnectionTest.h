#pragma once

#include <QObject>
#include <thread>

#include "fleetlink/fleetlink.h"
#include "recorders/CTcpProbe.h"
#include "recorders/stDef_RecorderForm.h"

/// What a connection test found.
struct stDef_TestResult
{
    enum class emDef_Verdict
    {
        Fine,
        NoHost,
        Unreachable,
        Closed,     ///< nothing listens at the HTTP port
        Silent,     ///< connected, but no answer
        Account,    ///< the account is refused
        NoRecorder, ///< something answers that is no recorder
        NoStream    ///< all fine but the RTSP port
    };

    emDef_Verdict nVerdict = emDef_Verdict::Fine;
    QString sModel;    ///< empty if the recorder doesn't tell
    int nChannels = 0; ///< 0 if the recorder doesn't tell

    /// The verdict in plain words, with what to do.
    QString m_F_s_Text(const stDef_RecorderForm& stForm) const;
};

/// Tries a recorder's address, ports and account one after the other, without blocking: is anybody there, is it a
/// recorder that takes the account, does it serve streams. Each step takes 5 s at most.
class CConnectionTest : public QObject
{
    Q_OBJECT

public:
    explicit CConnectionTest(QObject* pParent = nullptr);
    ~CConnectionTest() override; ///< stops

    void m_S_Start(const stDef_RecorderForm& stForm);
    /// Ends at once; no result comes any more.
    void m_S_Stop();
    bool m_F_b_Running() const { return vm_bRunning; }

Q_SIGNALS:
    void S_Done(stDef_TestResult stResult);

private:
    void m_S_Probed(CTcpProbe::emDef_Outcome nOutcome);
    void m_S_AskDocument();
    void m_S_TakeReply(int nSerial, int nLength, const QByteArray& sReply);
    bool m_F_b_ReadDocument(const QByteArray& sReply);
    void m_S_AskStream();
    void m_S_Finish(stDef_TestResult::emDef_Verdict nVerdict);

    stDef_RecorderForm vm_stForm;
    stDef_TestResult vm_stResult;
    CTcpProbe vm_objProbe;
    CHTTP vm_objHttp;
    std::thread vm_objWorker;
    int vm_nSerial = 0; ///< of the test; what an earlier one left in the event queue counts no more
    bool vm_bRunning = false;
    bool vm_bStreamStep = false;
};
