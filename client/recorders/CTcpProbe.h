#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

class QTcpSocket;

/// Asks once whether anybody answers at a host and port, without blocking. It reads a few bytes and hangs up, whatever
/// the other side does.
class CTcpProbe : public QObject
{
    Q_OBJECT

public:
    enum class emDef_Outcome
    {
        Answered,    ///< the answer begins as it should; or connected, if nothing was asked
        Strange,     ///< the answer begins otherwise
        Silent,      ///< connected, but no answer
        Refused,     ///< the machine is there, but nothing listens
        Unreachable, ///< nobody answers at that address
        NoHost       ///< no such name
    };

    explicit CTcpProbe(QObject* pParent = nullptr);
    ~CTcpProbe() override;

    /// Begins anew. With an empty request the connection is answer enough. `sBegin` is what an answer begins with.
    void m_S_Start(const QString& sHost, int nPort, const QByteArray& sRequest, const QByteArray& sBegin, int nLimitMs);
    void m_S_Stop();
    bool m_F_b_Running() const { return vm_pSocket != nullptr; }

Q_SIGNALS:
    /// Once a start, never from within `m_S_Start`.
    void S_Done(CTcpProbe::emDef_Outcome nOutcome);

private:
    void m_S_Connected();
    void m_S_Read();
    void m_S_Failed();
    void m_S_Finish(emDef_Outcome nOutcome);

    QTcpSocket* vm_pSocket = nullptr;
    QTimer vm_objLimit;
    QByteArray vm_sRequest;
    QByteArray vm_sBegin;
    bool vm_bConnected = false;
};
