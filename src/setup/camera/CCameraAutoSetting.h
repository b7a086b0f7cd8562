#pragma once

#include <QStringList>

#include "setup/camera/CCameraProbe.h"
#include "setup/camera/CCameraSearchList.h"

class CCameraList;
class CWndNvrEmbedded;
class QWidget;

/// What came of the cameras that were to be added.
struct stDef_AutoSettingResult
{
    int nAdded = 0;
    bool bFull = false;      ///< there was no room for more
    QStringList arRefused;   ///< added, but for no model: the camera did not take the account
    QStringList arUnreached; ///< added by its abilities alone, as the recorder did not get through to it
};

/// Adds the cameras that a search found, one after the other, under the template. A box tells which one it is at and
/// how many there are, and can be stopped; what was added so far stays.
class CCameraAutoSetting
{
public:
    /// All are borrowed.
    CCameraAutoSetting(CWndNvrEmbedded* pNvr, CCameraList* pCameras, QWidget* pParent);

    /// Ends early when a camera answers neither request, when the list is full, or when the user says so. A camera of a
    /// vendor without a driver is passed over.
    stDef_AutoSettingResult m_F_o_Run(const CCameraSearchList::Rows& arFound);

private:
    CWndNvrEmbedded* vm_pNvr;
    CCameraList* vm_pCameras;
    QWidget* vm_pParent;
};
