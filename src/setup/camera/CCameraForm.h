#pragma once

#include <QObject>

#include "setup/camera/stDef_CameraValues.h"
#include "toolkit/form/CMemberForm.h"

class CForm;
class CIPAddressEdit;
class CPasswordEdit;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QWidget;

/// The form of the Camera page: the values of the camera that is shown, or of one about to be added.
class CCameraForm : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Makes the controls; call it once, before anything else.
    QGroupBox* m_F_p_Make(CForm& objForm);

    /// What a new camera begins with.
    void m_S_Reset();
    /// An unknown vendor leaves none chosen.
    void m_S_Show(stDef_CameraValues stValues);
    stDef_CameraValues m_F_o_Values() const;
    /// Marks the address as a link-local one, which the recorder alone can reach.
    void m_S_MarkAddress(bool bLinkLocal);

    bool m_F_b_HasVendor() const;
    int m_F_n_VendorRow(int nVendorID) const; ///< position in the list; -1 if it lacks the vendor
    QString m_F_s_VendorName(int nRow) const;
    void m_S_SetModel(const QString& sModel);
    void m_S_SetName(const QString& sName);
    void m_S_SetRtspPort(const QString& sPort);
    /// Leads the user to the first value that can't be: address, ports, account.
    void m_S_FocusProblem();
    /// Whether there are an address, ports above 0 and an account.
    bool m_F_b_Complete() const { return !m_F_p_Problem(); }

private:
    void m_S_FillLists();
    void m_S_ShowOnvif(bool bOnvif);
    void m_S_OnVendorChanged();
    QWidget* m_F_p_Problem() const;

    CMemberForm<stDef_CameraValues> vm_objValues;
    QComboBox* vm_pVendor = nullptr;
    QLineEdit* vm_pModel = nullptr;
    QLineEdit* vm_pName = nullptr;
    CIPAddressEdit* vm_pIP = nullptr;
    QLineEdit* vm_pHttpPort = nullptr;
    QLineEdit* vm_pRtspPort = nullptr;
    QComboBox* vm_pOnvifAuth = nullptr;
    QLineEdit* vm_pUser = nullptr;
    CPasswordEdit* vm_pPassword = nullptr;
};
