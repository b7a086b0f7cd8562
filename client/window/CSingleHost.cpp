#include "window/CSingleHost.h"

#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QThread>

#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int LimitMs = 10000;
constexpr int PauseMs = 50;

// A socket in the folder itself is beyond the reach of other users, but for its path there is little room.
QString SocketName(const QDir& dir)
{
#ifndef Q_OS_WIN
    constexpr qsizetype MaxPath = 80;
    const QString sPath = dir.absoluteFilePath(u"host.socket"_s);
    if (QFile::encodeName(sPath).size() <= MaxPath)
        return sPath;
#endif
    return u"zentrix-"_s + QString::fromLatin1(CEnvObj::s_F_s_InstanceOf(dir.path()));
}

} // namespace

CSingleHost::CSingleHost(const QString& sFolder)
    : vm_objLock((QDir().mkpath(sFolder), QDir(sFolder).absoluteFilePath(u"host.lock"_s))),
      vm_sSocket(SocketName(QDir(sFolder)))
{
    vm_objLock.setStaleLockTime(0); // however long its owner lives
    vm_objServer.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&vm_objServer, &QLocalServer::newConnection, [this] { m_S_Accept(); });
}

bool CSingleHost::m_F_b_Take()
{
    if (!vm_objLock.tryLock(0))
        return vm_objLock.error() != QLockFile::LockFailedError;
    QLocalServer::removeServer(vm_sSocket); // of one that was killed
    vm_objServer.listen(vm_sSocket);        // who asks early waits until somebody serves
    return true;
}

CSingleHost::emDef_Place CSingleHost::m_F_n_Enter(const stDef_HostWish& stWish, stDef_HostAnswer& stAnswer)
{
    const QDeadlineTimer objLimit(LimitMs);
    while (!objLimit.hasExpired()) {
        if (m_F_b_Take())
            return emDef_Place::First;
        if (m_F_b_Ask(stWish, stAnswer, static_cast<int>(objLimit.remainingTime())))
            return emDef_Place::Second;
        QThread::msleep(PauseMs); // it is about to begin, or to end
    }
    return emDef_Place::NoAnswer;
}

bool CSingleHost::m_F_b_Ask(const stDef_HostWish& stWish, stDef_HostAnswer& stAnswer, int nLimitMs) const
{
    const QDeadlineTimer objLimit(nLimitMs);
    QLocalSocket objSocket;
    objSocket.connectToServer(vm_sSocket);
    if (!objSocket.waitForConnected(nLimitMs))
        return false;
    QDataStream objStream(&objSocket);
    objStream << stWish.arImports << stWish.bShow;
    do {
        objStream.startTransaction();
        objStream >> stAnswer.sOut >> stAnswer.sError;
        if (objStream.commitTransaction())
            return true;
    } while (objSocket.waitForReadyRead(static_cast<int>(objLimit.remainingTime())));
    return false;
}

void CSingleHost::m_S_Serve(std::function<stDef_HostAnswer(const stDef_HostWish&)> fnServe)
{
    vm_fnServe = std::move(fnServe);
}

void CSingleHost::m_S_Accept()
{
    QLocalSocket* const pSocket = vm_objServer.nextPendingConnection();
    const auto Read = [this, pSocket] {
        QDataStream objStream(pSocket);
        stDef_HostWish stWish;
        objStream.startTransaction();
        objStream >> stWish.arImports >> stWish.bShow;
        if (!objStream.commitTransaction() || !vm_fnServe)
            return;
        const stDef_HostAnswer stAnswer = vm_fnServe(stWish);
        objStream << stAnswer.sOut << stAnswer.sError;
        pSocket->disconnectFromServer();
    };
    QObject::connect(pSocket, &QLocalSocket::readyRead, pSocket, Read);
    QObject::connect(pSocket, &QLocalSocket::disconnected, pSocket, &QObject::deleteLater);
    Read(); // what came before anybody listened
}
