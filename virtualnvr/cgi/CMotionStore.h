#pragma once

#include "cgi/stDef_MotionCamera.h"

#include <functional>
#include <mutex>
#include <vector>

class CDocumentStore;

/// The motion windows of a recorder's cameras, kept as the Motion document. They follow their camera when the list of
/// cameras changes, as the marks of them do that its node in the Camera document holds. From any thread.
class CMotionStore
{
public:
    /// The documents must outlive this object.
    explicit CMotionStore(CDocumentStore& objDocuments) : vm_objDocuments(objDocuments) {}

    /// Reads what the opened documents hold. What breaks a camera's limits is dropped.
    void m_S_Load(int nChannels);

    /// Brings the windows to the cameras of the Camera document. A camera that was there before, by brand and address,
    /// keeps its windows wherever its slot is now; so does one in its old slot that only got another address. Any other
    /// begins anew, and the windows of one that is gone go with it.
    void m_S_TakeCameras();

    /// The camera of a slot; its nVendorID is -1 where none is.
    stDef_MotionCamera m_F_o_Camera(int nCamera) const;

    /// Changes a camera; it is on the disk when the call returns.
    /// @param fnChange works on a copy of a camera with limits; false drops that
    /// @return false with sError set if there is none, fnChange said so, or it can't be written
    bool m_F_b_Change(int nCamera, const std::function<bool(stDef_MotionCamera&, std::string& sError)>& fnChange,
                      std::string& sError);

private:
    bool m_F_b_Keep(std::vector<stDef_MotionCamera> arCameras, std::string& sError);

    CDocumentStore& vm_objDocuments;
    mutable std::mutex vm_objLock;                ///< also held during disk work
    std::vector<stDef_MotionCamera> vm_arCameras; ///< by slot, one a channel
};
