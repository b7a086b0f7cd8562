#pragma once

#include "setup/CCameraProbe.h"
#include "setup/CCameraSearchList.h"

class CCameraList;
class CWndNvrEmbedded;
class QWidget;

/// Adds the cameras that a search found, one after the other, under the template. A window tells which one it is at and
/// how many there are, and can be stopped between two cameras; what was added so far stays.
class CCameraAutoSetting
{
public:
    /// All are borrowed.
    CCameraAutoSetting(CWndNvrEmbedded* pNvr, CCameraList* pCameras, QWidget* pParent);

    /// Ends early when a camera answers neither request, when the list is full, or when the user says so. A camera of a
    /// vendor without a driver is passed over. Returns how many were added.
    int m_F_n_Run(const CCameraSearchList::Rows& arFound);

private:
    CWndNvrEmbedded* vm_pNvr;
    CCameraList* vm_pCameras;
    QWidget* vm_pParent;
};
