#pragma once

#include <QStringList>

/// The program that makes the tour: the host with its window driven by itself. Needs a QApplication.
class CTourApp
{
public:
    static constexpr int ExitTourFailed = 1; ///< otherwise as the host ends

    /// `arArguments` is the program's name, the folder for the pictures, and the options of the host.
    static int s_F_n_Run(QStringList arArguments);
};
