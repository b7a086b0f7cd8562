#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

/// Saves pictures as PNG files.
class CSnapshot
{
public:
    /// Where pictures go: "Zentrix CMS" in the user's folder of pictures.
    static QString s_F_s_Folder();
    /// Writes the picture into the folder, made if needed, under a name of these parts and a number where that name is
    /// taken: no file is ever written over. Returns the file, empty if it can't be written.
    static QString s_F_s_Save(const QImage& objImage, const QString& sFolder, const QString& sTitle,
                              const QDateTime& tmTaken);
    /// A title as part of a file name: what a file system could take amiss becomes '_'.
    static QString s_F_s_SafeName(const QString& sTitle);
};
