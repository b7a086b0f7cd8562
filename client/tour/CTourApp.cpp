#include "tour/CTourApp.h"

#include <cstdio>

#include "tour/CTour.h"
#include "window/CHostApp.h"
#include "window/CMainWindow.h"

using namespace Qt::StringLiterals;

namespace {

QtMessageHandler s_fnUsualMessages = nullptr;

void Print(std::FILE* pStream, const QString& sText)
{
    std::fputs(sText.toLocal8Bit().constData(), pStream);
    std::fflush(pStream);
}

// The offscreen platform says at each window what it leaves out, which nobody misses there.
void SkipPlatformNotes(QtMsgType nType, const QMessageLogContext& objContext, const QString& sText)
{
    if (!sText.startsWith(u"This plugin does not support"_s))
        s_fnUsualMessages(nType, objContext, sText);
}

int RunTour(CMainWindow& objWindow, CRecorderStore& objStore, const QString& sFolder)
{
    s_fnUsualMessages = qInstallMessageHandler(SkipPlatformNotes);
    objWindow.m_S_SetPictureFolder(sFolder);
    CTour objTour(&objWindow, &objStore, sFolder);
    const QStringList arFailures = objTour.m_F_ar_Run();
    qInstallMessageHandler(s_fnUsualMessages);
    Print(stdout, objTour.m_F_s_Report());
    for (const QString& sFailure : arFailures)
        Print(stderr, u"fleetlink-tour: %1\n"_s.arg(sFailure));
    return arFailures.isEmpty() ? CHostApp::ExitOk : CTourApp::ExitTourFailed;
}

} // namespace

int CTourApp::s_F_n_Run(QStringList arArguments)
{
    if (arArguments.size() < 2 || arArguments[1].startsWith(u'-')) {
        Print(stderr, u"usage: fleetlink-tour FOLDER [option of the host]...\n"_s);
        return CHostApp::ExitSetup;
    }
    const QString sFolder = arArguments.takeAt(1);
    return CHostApp::s_F_n_Run(arArguments, [&sFolder](CMainWindow& objWindow, CRecorderStore& objStore) {
        return RunTour(objWindow, objStore, sFolder);
    });
}
