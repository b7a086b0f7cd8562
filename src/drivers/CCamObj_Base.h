#pragma once

#include <QString>

#include "drivers/stDef_CamConnect.h"

class CEnvObj;
class CTemplateMap;
class CWndNvrBase;
class CXmlObj;
class QWidget;
struct stDef_DriverRow;

/// One camera of a recorder, as its brand's driver sees it: what the recorder tells of the camera goes onto the
/// camera's node in the Camera document. All model-specific behaviour comes from those replies. Nothing here talks to a
/// camera, and nothing shows a message. GUI thread only.
class CCamObj_Base
{
public:
    /// Makes the object of a vendor; null for one without a driver. The connection is borrowed; the caller sets
    /// `m_nCamIndex`.
    static CCamObj_Base* s_F_p_CreateCamObj(int nVendorID, CWndNvrBase* pNvr);
    /// What a recorder is asked of a camera: `sAction` is "detect&camid=0" or "camerasupport". All values stand as they
    /// are, nothing is escaped.
    static QString s_F_s_Url(const QString& sAction, const QString& sIP, int nHttpPort, const QString& sUser,
                             const QString& sPassword, int nVendorID, int nOnvifAuth);

    virtual ~CCamObj_Base();
    CCamObj_Base(const CCamObj_Base&) = delete;
    CCamObj_Base& operator=(const CCamObj_Base&) = delete;

    /// Sets the caller's pointer to null, if there is one, and deletes this object.
    virtual void m_S_Release(CCamObj_Base** ppSelf);
    /// Takes the record over. False, and nothing changes, without an address or an account name or with a negative
    /// HTTP port.
    virtual bool m_F_b_SetConnect(stDef_CamConnect stConnect);
    /// Copies the camera of a detect reply onto this camera's node and composes its name. False if neither that reply
    /// nor the Camera document is open.
    virtual bool m_F_b_ApplyDetect(CXmlObj* pDetect);
    /// Sets what follows from the recorder's camera template and the camera's abilities. False if neither `pSupport`
    /// nor the Camera document is open. What depends on an entry of the abilities stays as it is if none fits.
    virtual bool m_F_b_ApplyTemplate(CXmlObj* pDetect, CXmlObj* pSupport);
    /// Makes the node of another index anew as a copy of this camera's. This object keeps its index, and its own node
    /// stays as it is.
    virtual void m_F_b_CopyToIndex(int nNewIndex);
    /// Runs the brand's parameter sheet, which belongs to the connection's window, whatever the parent is. Asks the
    /// recorder, as a page does, and writes the camera's node if the sheet is left by OK.
    virtual void m_S_ShowParameter(QWidget* pParent) = 0;
    /// Asks the recorder what the camera can do; blocks under the wait cursor.
    virtual bool m_F_b_GetSupport(CXmlObj* pSupport, int nTimeoutMs);
    /// Opens the brand's motion window as a child of the parent, or opens it anew. It takes the place that the parent's
    /// layout has for it. Asks the recorder, as a page does.
    virtual void m_S_ShowMotion(QWidget* pParent) = 0;
    /// Closes it, if it is open; `bSave` puts what is checked in it into the Camera document first.
    virtual void m_S_CloseMotion(bool bSave);
    QString m_F_s_NodePath() const; ///< of the camera's node in the Camera document

    stDef_CamConnect m_stConnect;
    CEnvObj* m_pEnv = nullptr;       ///< not owned
    CWndNvrBase* m_pNvr = nullptr;   ///< not owned
    int m_nCamIndex = -1;            ///< of the camera's node
    QWidget* m_pMotionWnd = nullptr; ///< owned

protected:
    explicit CCamObj_Base(const stDef_DriverRow& stRow) : vm_stRow(stRow) {}

private:
    virtual void m_S_MapTemplate(CTemplateMap& objMap) const = 0;

    const stDef_DriverRow& vm_stRow;
};
