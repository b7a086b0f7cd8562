#pragma once

#include "scene/CPtzCamera.h"

#include <mutex>
#include <vector>

/// The movable cameras of a recorder, by the steady clock. From any thread.
class CPtzBoard
{
public:
    /// All cameras anew, at home.
    void m_S_Reset(int nCameras);

    /// False if there is no such camera, or it doesn't take the command; see CPtzCamera.
    bool m_F_b_Command(int nCamera, const CPtzCamera::Query& mapQuery);

    /// Of a camera that there isn't: as at home.
    stDef_PtzState m_F_o_State(int nCamera) const;
    /// @param fAgo as the camera looked so many seconds ago, but not before its last command
    stDef_PtzView m_F_o_View(int nCamera, double fAgo = 0.0) const;

private:
    bool m_F_b_Has(int nCamera) const;

    mutable std::mutex vm_objLock;
    std::vector<CPtzCamera> vm_arCameras;
};
