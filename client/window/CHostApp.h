#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class CMainWindow;
class CRecorderStore;

/// What the command line asks for.
struct stDef_HostOptions
{
    QString sConfigFolder;
    QString sLangFolder;
    QStringList arImports;
    bool bImportOnly = false; ///< ends when the cards are in the list
};

/// The program: options, environment, recorder list, window. Needs a QApplication.
class CHostApp
{
public:
    static constexpr int ExitOk = 0;
    static constexpr int ExitSetup = 2; ///< options, configuration folder or a recorder card are unusable

    /// Answers --help and --version on stdout; false if neither was asked for. Needs a QCoreApplication alone.
    static bool s_F_b_Inform(const QStringList& arArguments);
    /// Works the host's window in the user's place; what it returns is the exit code.
    using RunWindow = std::function<int(CMainWindow&, CRecorderStore&)>;

    /// Runs the host with the arguments (the first is the program's name) until its window is closed, or `fnRun` has
    /// done its work at it. What went wrong is told on stderr.
    static int s_F_n_Run(const QStringList& arArguments, const RunWindow& fnRun = {});
};
