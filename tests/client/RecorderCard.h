#pragma once

#include <QString>
#include <gtest/gtest.h>

#include "CVirtualNvr.h"
#include "support/Files.h"

/// Writes a recorder card as a virtual recorder would.
inline void WriteCard(const QString& sFile, const QString& sName, int nHttpPort, int nRtspPort, int nChannels,
                      const char* pszPassword = "Fl33t!ink")
{
    WriteFile(sFile, QString("<root><Recorder Name=\"%1\" Type=\"1\" IP=\"127.0.0.1\" HttpPort=\"%2\" RtspPort=\"%3\" "
                             "UID=\"admin\" ClearPWD=\"%4\" Channels=\"%5\"/></root>")
                         .arg(sName)
                         .arg(nHttpPort)
                         .arg(nRtspPort)
                         .arg(pszPassword)
                         .arg(nChannels)
                         .toUtf8());
}

inline stDef_VirtualNvrConfig WithChannels(int nChannels)
{
    stDef_VirtualNvrConfig stConfig;
    stConfig.nChannels = nChannels;
    return stConfig;
}
