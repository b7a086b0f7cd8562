#pragma once

#include <QList>
#include <QPalette>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>

#include "live/CLiveChannel.h"

class CMainWindow;
class CRecorderStore;

/// Drives the host's own window through its states without anybody at it: pictures of each, a table of what was
/// measured, and a word on everything that was not as it should be. The list's first recorder has to work; what the
/// others show is told, and each state that a cell comes to is photographed once.
class CTour
{
public:
    /// Longest waits in ms, for the parts of the tour.
    struct stDef_Limits
    {
        int nLiveMs = 20000;
        int nEndMs = 5000;
        int nMeasureMs = 2000;
        int nStatesMs = 25000; ///< for the states of the further recorders
    };

    CTour(CMainWindow* pWindow, CRecorderStore* pStore, const QString& sFolder);
    CTour(CMainWindow* pWindow, CRecorderStore* pStore, const QString& sFolder, const stDef_Limits& stLimits);

    /// Runs the tour: PNGs and `tour.txt` go into the folder. Returns what failed; empty if all went well.
    QStringList m_F_ar_Run();
    /// The table, as in `tour.txt`.
    QString m_F_s_Report() const;

private:
    struct stDef_ChannelRow
    {
        QString sTitle;
        std::int64_t nFirstPictureMs = -1;
        double nRate = 0;
        QString sStates;
    };

    bool m_F_b_Wait(const std::function<bool()>& fnDone, int nLimitMs);
    void m_S_Settle();
    void m_S_Trigger(const char* pszAction);
    void m_S_Grab(const QString& sName, QWidget* pWidget = nullptr);
    void m_S_GrabStates();
    void m_S_Fail(const QString& sWhat);
    bool m_F_b_WaitLive();
    void m_S_Measure();
    void m_S_AddRow(const CLiveChannel& objChannel, double nRate);
    void m_S_Live();
    void m_S_Shapes();
    void m_S_States();
    void m_S_Dialogs(const QString& sSuffix);
    void m_S_TestConnection(int nNvrID, const QString& sName);
    void m_S_Ptz();
    void m_S_Looks();
    void m_S_Exchange();
    void m_S_Settings();
    void m_S_Disconnect();
    void m_S_Reconnect();
    void m_S_WriteReport();

    CMainWindow* vm_pWindow;
    CRecorderStore* vm_pStore;
    QString vm_sFolder;
    stDef_Limits vm_stLimits;
    int vm_nFirstNvr = -1;
    QStringList vm_arFailures;
    QList<stDef_ChannelRow> vm_arRows;
    QSet<emDef_LiveState> vm_setSeen;
};
