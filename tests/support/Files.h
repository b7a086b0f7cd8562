#pragma once

#include <QFile>
#include <gtest/gtest.h>

/// All bytes of a file, which must be there.
inline QByteArray ReadFile(const QString& sPath)
{
    QFile file(sPath);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << sPath.toStdString();
    return file.readAll();
}

inline void WriteFile(const QString& sPath, const QByteArray& sBytes)
{
    QFile file(sPath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(sBytes) == sBytes.size()) << sPath.toStdString();
}
