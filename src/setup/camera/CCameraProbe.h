#pragma once

#include "host/Lib_Bedrock.h"

class CPageRequests;
struct stDef_CameraValues;

/// What the recorder found out about a camera. A request that failed leaves its document closed.
struct stDef_CameraReplies
{
    CXmlObj xmlDetect;
    CXmlObj xmlSupport;

    /// Whether a detect reply names a model: a camera that refused the account has none.
    static bool s_F_b_Recognized(const CXmlObj& xmlDetect);
};

/// Asks the recorder for a camera: only the recorder ever talks to one. Each request takes up to a minute; accounts go
/// out as they stand. A user's stop ends what is asked for and fails it.
class CCameraProbe
{
public:
    /// The requests are borrowed.
    explicit CCameraProbe(CPageRequests& objRequests) : vm_objRequests(objRequests) {}

    /// Has the recorder log in to the camera.
    bool m_F_b_Detect(const stDef_CameraValues& stCamera, CXmlObj& xmlReply) const;
    /// The same, and asks for its abilities, whatever came of the first. False if both failed or they were
    /// stopped.
    bool m_F_b_DetectAndSupport(const stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies) const;
    /// Has the recorder look for cameras on its network. False if no document came.
    bool m_F_b_Search(CXmlObj& xmlReply) const;

private:
    CPageRequests& vm_objRequests;
};
