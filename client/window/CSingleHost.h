#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QStringList>
#include <functional>

/// What a host was started with, as far as one that runs already can do it.
struct stDef_HostWish
{
    QStringList arImports; ///< absolute paths
    bool bShow = true;     ///< its window comes to the front
};

/// What came of it.
struct stDef_HostAnswer
{
    QString sOut;   ///< lines
    QString sError; ///< empty: all went well
};

/// One host a configuration folder: of two, the one that saves last would take the other's recorders away. The first
/// one holds a lock in the folder, which it loses when it dies, and hears through a local socket what later ones want.
/// GUI thread; it blocks while it asks.
class CSingleHost
{
public:
    enum class emDef_Place
    {
        First,   ///< the folder is ours
        Second,  ///< another host has it, and answered
        NoAnswer ///< another host has it
    };

    /// The folder is made if it isn't there.
    explicit CSingleHost(const QString& sFolder);

    /// Takes the folder, or else asks who has it for what is wished, in at most 10 s. A folder that can't be locked
    /// for any other reason counts as ours: whoever uses it finds out.
    emDef_Place m_F_n_Enter(const stDef_HostWish& stWish, stDef_HostAnswer& stAnswer);
    /// Takes the folder; false if another host has it.
    bool m_F_b_Take();
    /// The first one's answer to each wish from now on; called from the event loop.
    void m_S_Serve(std::function<stDef_HostAnswer(const stDef_HostWish&)> fnServe);

private:
    bool m_F_b_Ask(const stDef_HostWish& stWish, stDef_HostAnswer& stAnswer, int nLimitMs) const;
    void m_S_Accept();

    QLockFile vm_objLock;
    QString vm_sSocket;
    QLocalServer vm_objServer;
    std::function<stDef_HostAnswer(const stDef_HostWish&)> vm_fnServe;
};
