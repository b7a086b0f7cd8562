#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "tour/CTourParameters.h"

class QAction;
class QDialog;
class QMessageBox;
class QTabWidget;
class QWidget;

/// The tour's way through a recorder's settings: its menu, the sheet with all of its tabs, and after OK the upload and
/// the wait. The windows are the library's own and modal, so a timer photographs and leaves them one by one.
class CTourSettings : public QObject
{
    Q_OBJECT

public:
    using Grab = std::function<void(const QString& sName, QWidget* pWidget)>;

    /// `sSuffix` stands behind the pictures' names; `bOk` leaves the sheet by OK instead of Cancel.
    CTourSettings(Grab fnGrab, const QString& sSuffix, bool bOk);

    /// Chooses the first entry of the menu that the action shows, and returns when all windows are closed again: what
    /// was not as it should be, empty if all went well.
    QStringList m_F_ar_Run(QAction* pShowMenu);

private:
    void m_S_Step();
    void m_S_LeaveMenu(QWidget* pMenu);
    void m_S_AtSheet(QDialog* pSheet, QTabWidget* pTabs);
    void m_S_LeaveSheet(QDialog* pSheet);
    void m_S_LeaveParameters(QDialog* pSheet);
    void m_S_LeaveMessage(QMessageBox* pMessage);
    void m_S_AtOther(QDialog* pDialog);
    /// Photographs it unless a picture of this name was taken.
    void m_S_GrabOnce(const char* pszName, QWidget* pWidget);

    Grab vm_fnGrab;
    QString vm_sSuffix;
    bool vm_bOk;
    QTimer vm_objSteps;
    CTourParameters vm_objParameters;
    int vm_nTab = -1; ///< the tab that is on its way to the screen
    QSet<QString> vm_setGrabbed;
    QStringList vm_arFailures;
};
