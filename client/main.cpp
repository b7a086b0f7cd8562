#include <QApplication>

#include "window/CHostApp.h"

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("zentrix-cms"));
    QCoreApplication::setApplicationVersion(QStringLiteral(FLEETLINK_VERSION));
    {
        const QCoreApplication objBare(argc, argv); // a question about the program needs no display
        if (CHostApp::s_F_b_Inform(QCoreApplication::arguments()))
            return CHostApp::ExitOk;
    }
    const QApplication objApp(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Zentrix CMS"));
    return CHostApp::s_F_n_Run(QApplication::arguments());
}
