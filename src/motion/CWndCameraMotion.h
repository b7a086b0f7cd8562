#pragma once

#include <QPointer>
#include <optional>

#include "core/CWndNvrBase.h"
#include "motion/CMotionReader.h"
#include "motion/CSetMotionObj.h"
#include "motion/stDef_MotionBrand.h"
#include "toolkit/form/CForm.h"

class CCamObj_Base;
class CFormGroup;
class CItemList;
class CPageRequests;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

/// The window in which an operator manages the motion windows of one camera on the recorder: the canvas, the list of
/// the windows, and the values of the selected one. Each Add, Delete or Update is one request, after which all is
/// loaded anew. What the brands share; a brand is a row. GUI thread only.
///
/// A motion window has two identities: its position (row, place in the reply and in the stream, place on the canvas)
/// and the recorder's `Index`, the row's number, which alone addresses it in requests and in the camera's
/// `MotionSetting`.
class CWndCameraMotion : public QWidget
{
    Q_OBJECT

public:
    /// Made hidden; the camera object and its connection are borrowed.
    CWndCameraMotion(const stDef_MotionBrand& stBrand, CCamObj_Base* pCamObj, QWidget* pParent);
    ~CWndCameraMotion() override;

    /// Shows the window, makes its controls anew, fills them from the recorder and follows its motion stream. The
    /// window may be gone when this returns: it may be closed while the recorder is asked.
    void m_S_Open();
    /// Puts what is checked into the Camera document. Always true. A list that could not be fetched is not saved.
    bool m_F_b_SaveMotionSetting();

private:
    /// How a load finds the rows that are checked.
    enum class emDef_Checks
    {
        AnyToken, ///< a row is checked if any token of the setting names it
        InOrder   ///< tokens are in the order of the rows: right after they were written so
    };

    // The controls.
    void m_S_Release();
    void m_S_MakeControls();
    QWidget* m_F_p_MakeView();
    QWidget* m_F_p_MakeList();
    QWidget* m_F_p_MakeFields();
    void m_S_MakeTypes(CFormGroup& grp);
    void m_S_ShowRanges();
    void m_S_StartReader();
    void m_S_StopReader();
    /// The worker's entry. Returns 0.
    static unsigned int s_F_n_MotionThread(void* pReader);

    // The recorder.
    QString m_F_s_CameraPath() const;
    QString m_F_s_WindowPath(int nPosition) const;
    int m_F_n_Number(const char* pszKey) const;
    QString m_F_s_Url(const QString& sQuery) const;
    QString m_F_s_UpdateUrl(int nIndex) const;
    /// Sends a request, if one is given, and fetches the list. False if the window is gone.
    bool m_F_b_Exchange(const QString& sUrl, emDef_Checks nChecks);
    void m_S_Load(emDef_Checks nChecks);
    void m_S_PlaceCanvas();
    void m_S_FillList();
    void m_S_Check(emDef_Checks nChecks);
    stDef_Rect m_F_o_Stored(int nPosition) const;
    QString m_F_s_MotionSetting() const;

    // What the operator does.
    void m_S_OnAdd();
    void m_S_OnDelete();
    void m_S_OnUpdate();
    void m_S_OnWindowType(bool bIncluded);
    void m_S_OnSelectRow();
    void m_S_SelectRow(int nRow);
    void m_S_OnChecked(int nRow, bool bChecked);
    void m_S_ShowRow(int nRow);
    void m_S_ShowNoRow();
    void m_S_OnPlaced();
    void m_S_ShowPlace();
    void m_S_Tell(const stDef_Text& stText);
    void m_S_NameWindow(int nPosition) const;
    QString m_F_s_Line(const stDef_Text& stText) const;

    const stDef_MotionBrand& vm_stBrand;
    CCamObj_Base* vm_pCamObj;
    QPointer<CWndNvrBase> vm_pNvr;
    std::optional<CForm> vm_objForm;
    CXmlObj vm_xmlMotion; ///< the last list; closed if it could not be fetched
    int vm_nSelect = -1;  ///< position of the selected row
    std::shared_ptr<CMotionReader> vm_pReader;
    CStdThread vm_threadMotion;
    bool vm_bHadTarget = false; ///< of the connection, before the reader took it

    QWidget* vm_pContent = nullptr; ///< holds all controls; null while closed
    CSetMotionObj* vm_pSetMotion = nullptr;
    CItemList* vm_pList = nullptr;
    QPushButton *vm_pAdd = nullptr, *vm_pDelete = nullptr, *vm_pUpdate = nullptr;
    QLineEdit *vm_pName = nullptr, *vm_pFirst = nullptr, *vm_pSecond = nullptr;
    QRadioButton *vm_pIncluded = nullptr, *vm_pExcluded = nullptr; ///< null for a brand without window types
    QLabel *vm_pPlace = nullptr, *vm_pNote = nullptr;
};
