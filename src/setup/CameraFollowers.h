#pragma once

/// What the Schedule page hears of a change of the camera list.
class CScheduleFollower
{
public:
    virtual ~CScheduleFollower() = default;
    virtual void m_S_CameraAdded(int nIndex) = 0;
    /// `nIndex` -1 means every camera. `nCount` is the number of cameras after the change (before it for -1).
    virtual void m_S_CameraRemoved(int nIndex, int nCount) = 0;
    virtual void m_S_CameraUpdated(int nIndex) = 0;
    virtual void m_S_CameraCopied(int nFrom, int nTo) = 0;
    virtual void m_S_CameraSwitched(int nFirst, int nSecond) = 0;
};

/// What the Motion page hears of it.
class CMotionFollower
{
public:
    virtual ~CMotionFollower() = default;
    virtual void m_S_RefreshCameras(int nIndex) = 0;
};
