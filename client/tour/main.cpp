#include <QApplication>

#include "tour/CTourApp.h"

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("zentrix-cms")); // the host's, whose window it shows
    const QApplication objApp(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Zentrix CMS"));
    return CTourApp::s_F_n_Run(QApplication::arguments());
}
