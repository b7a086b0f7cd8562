#include <QApplication>

#include "CHostApp.h"

int main(int argc, char* argv[])
{
    const QApplication objApp(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zentrix-cms"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zentrix CMS"));
    return CHostApp::s_F_n_Run(QApplication::arguments());
}
