#include "recorders/CTcpProbe.h"

#include <QNetworkProxy>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

CTcpProbe::CTcpProbe(QObject* pParent) : QObject(pParent)
{
    vm_objLimit.setSingleShot(true);
    connect(&vm_objLimit, &QTimer::timeout, this,
            [this] { m_S_Finish(vm_bConnected ? emDef_Outcome::Silent : emDef_Outcome::Unreachable); });
}

CTcpProbe::~CTcpProbe()
{
    m_S_Stop();
}

void CTcpProbe::m_S_Start(const QString& sHost, int nPort, const QByteArray& sRequest, const QByteArray& sBegin,
                          int nLimitMs)
{
    m_S_Stop();
    vm_sRequest = sRequest;
    vm_sBegin = sBegin;
    vm_bConnected = false;
    vm_pSocket = new QTcpSocket(this);
    vm_pSocket->setProxy(QNetworkProxy::NoProxy);
    vm_pSocket->setReadBufferSize(256);
    connect(vm_pSocket, &QTcpSocket::connected, this, &CTcpProbe::m_S_Connected);
    connect(vm_pSocket, &QTcpSocket::readyRead, this, &CTcpProbe::m_S_Read);
    // Queued, since a wrong address fails within the call.
    connect(vm_pSocket, &QTcpSocket::errorOccurred, this, &CTcpProbe::m_S_Failed, Qt::QueuedConnection);
    const bool bBrackets = sHost.startsWith(u'[') && sHost.endsWith(u']');
    vm_objLimit.start(nLimitMs);
    vm_pSocket->connectToHost(bBrackets ? sHost.mid(1, sHost.size() - 2) : sHost, quint16(nPort));
}

void CTcpProbe::m_S_Stop()
{
    vm_objLimit.stop();
    if (!vm_pSocket)
        return;
    QTcpSocket* const pSocket = std::exchange(vm_pSocket, nullptr);
    pSocket->disconnect(this);
    pSocket->abort();
    pSocket->deleteLater(); // it may be the one that calls
}

void CTcpProbe::m_S_Connected()
{
    vm_bConnected = true;
    if (vm_sRequest.isEmpty())
        m_S_Finish(emDef_Outcome::Answered);
    else
        vm_pSocket->write(vm_sRequest);
}

void CTcpProbe::m_S_Read()
{
    const QByteArray sStart = vm_pSocket->peek(vm_sBegin.size());
    if (sStart != vm_sBegin.left(sStart.size()))
        m_S_Finish(emDef_Outcome::Strange);
    else if (sStart.size() == vm_sBegin.size())
        m_S_Finish(emDef_Outcome::Answered);
}

void CTcpProbe::m_S_Failed()
{
    if (!vm_pSocket || sender() != vm_pSocket)
        return;
    if (vm_bConnected)
        m_S_Finish(emDef_Outcome::Silent);
    else if (vm_pSocket->error() == QAbstractSocket::ConnectionRefusedError)
        m_S_Finish(emDef_Outcome::Refused);
    else if (vm_pSocket->error() == QAbstractSocket::HostNotFoundError)
        m_S_Finish(emDef_Outcome::NoHost);
    else
        m_S_Finish(emDef_Outcome::Unreachable);
}

void CTcpProbe::m_S_Finish(emDef_Outcome nOutcome)
{
    m_S_Stop();
    Q_EMIT S_Done(nOutcome);
}
