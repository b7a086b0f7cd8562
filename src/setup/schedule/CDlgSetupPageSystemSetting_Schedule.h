#pragma once

#include <QUndoStack>

#include "core/CNvrPage.h"
#include "setup/schedule/CScheduleWeek.h"

class CCameraTree;
class CFormGroup;
class CItemList;
class CTimeListCtrl;
class QPushButton;

/// Tab Schedule: when each camera records, as seven bars over the records of one day. Each action writes into the
/// Schedule document at once, and the bars are a picture of it; every action can be undone until the camera list
/// changes.
///
/// The sheet tells it of the camera list from the start: the document follows whether the page was shown or not.
class CDlgSetupPageSystemSetting_Schedule : public CNvrPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_Schedule(CWndNvrEmbedded* pNvr);

    void m_S_CameraAdded(int nCamera);
    /// `nCamera` -1: all of them. `nCount` is the number of cameras that are left, or that there were for -1.
    void m_S_CameraRemoved(int nCamera, int nCount);
    void m_S_CameraUpdated(int nCamera);
    void m_S_CameraCopied(int nFrom, int nTo);
    void m_S_CameraSwitched(int nFirst, int nSecond);

private:
    // The window.
    void m_S_Make(CForm& objForm) override;
    void m_S_Opened() override;
    QWidget* m_F_p_MakeTree(CForm& objForm);
    QWidget* m_F_p_MakeWeek(CForm& objForm);
    void m_S_MakeRecords(CForm& objForm);
    void m_S_MakeButtons(CFormGroup& grp);
    void m_S_FitGrid(const CScheduleWeek::Labels& arLabels);
    void m_S_Connect();
    void m_S_AddKeys();
    QString m_F_s_Told(int nDay, const TIME_STATE& stState) const;

    // The picture of the document.
    CNumberedNodes m_F_o_Cameras() const;
    QString m_F_s_CameraName(int nCamera) const;
    void m_S_FollowCameras(const std::function<void()>& fnChange);
    void m_S_Rebuild();
    void m_S_ChooseCamera(int nCamera);
    void m_S_OnBlock(int nBlock, int nDay);
    void m_S_OnNoDay();
    /// What everything ends in: a record, or -1 for none, of a day becomes the current one. What its block was dragged
    /// to goes into the document.
    void m_S_ShowDay(int nItem, int nDay);
    void m_S_TakeBlock(int nItem, int nDay);
    void m_S_ListRecords();
    QString m_F_s_TypeOf(const stDef_ScheduleRecord& st) const;
    void m_S_ShowRecord(int nRecord);
    void m_S_Enable(const QList<QPushButton*>& arButtons, bool bEnabled);

    // The actions.
    bool m_F_b_CanEdit() const;
    void m_S_Add();
    void m_S_Delete();
    void m_S_Setting();
    void m_S_Copy();
    bool m_F_b_RunDialog(TIME_STATE& stItem, int nDay, int& nRecord);
    /// Makes what was done since the week was like this a step that can be taken back.
    void m_S_NoteStep(const QString& sWeekBefore, int nItem, int nDay);

    CScheduleDocument vm_objSchedule;
    CScheduleWeek vm_objWeek;
    CCameraTree* vm_pTree = nullptr;
    CTimeListCtrl* vm_pGrid = nullptr;
    CItemList* vm_pRecords = nullptr;
    QList<QPushButton*> vm_arForDay;    ///< Add, Copy
    QList<QPushButton*> vm_arForRecord; ///< Delete, Setting
    int m_nCurDay = 0;
    bool m_bInited = false;
    bool vm_bDragNoted = false; ///< the drag that goes on is a step already
    QUndoStack vm_objUndo;      ///< goes first, for its steps show themselves in what stands above
};
