#include "setup/schedule/CDlgSetupPageSystemSetting_Schedule.h"

#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "setup/CCameraTree.h"
#include "setup/schedule/CDlgSetupPageSystemSetting_Schedule_Setting.h"
#include "setup/schedule/CScheduleStep.h"
#include "setup/schedule/stDef_RecordType.h"
#include "toolkit/controls/CColorLegend.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"
#include "widgets/CPixelPainter.h"
#include "widgets/CTimeListCtrl.h"
#include "widgets/CTimeStateWnd.h"

using namespace Qt::StringLiterals;

using Page = CDlgSetupPageSystemSetting_Schedule;

namespace {

constexpr Text CameraText{"Camera", "Camera"};
constexpr Text ScheduleText{"Schedule", "Schedule"};
constexpr Text LocalText{"Local", "Local"};
constexpr Text TrueText{"True", "True"};
constexpr Text FalseText{"False", "False"};
constexpr Text CopyWeekText{"CopyWeek", "All Week Schedule Will The Same With Selected."};
constexpr Text WarningText{"Warning", "Warning"};
constexpr Text NoBlockText{"RecordWithoutBlock", "This record overlaps another one, so that no block stands for it."};
constexpr Text BlockText{"RecordBlock", "%1, %2 to %3, %4"};
constexpr Text g_aDays[CScheduleDocument::Days] = {
    {"Week0", "Sunday"},   {"Week1", "Monday"}, {"Week2", "Tuesday"},  {"Week3", "Wednesday"},
    {"Week4", "Thursday"}, {"Week5", "Friday"}, {"Week6", "Saturday"},
};
constexpr Text g_aColumns[] = {{"StartTime", "Start Time"}, {"EndTime", "End Time"}, {"RecordType", "Record Type"}};

// Pixels at 96 dpi.
constexpr int LabelWidth = 80;
constexpr int BarWidth = 576;
constexpr int ColumnWidth = 220;

constexpr int InputMode = 3;
constexpr int TrueState = 1;

} // namespace

Page::CDlgSetupPageSystemSetting_Schedule(CWndNvrEmbedded* pNvr)
    : CNvrPage(pNvr), vm_objSchedule(&pNvr->vm_xmlSchedule), vm_objWeek(vm_objSchedule)
{
    CTimeStateBar::s_S_SetClock([] { return CUserSide::s_F_o_Get().m_F_n_TickMs(); });
}

void Page::m_S_Make(CForm& objForm)
{
    auto* const pGrid = new QGridLayout(this);
    pGrid->addWidget(m_F_p_MakeTree(objForm), 0, 0);
    pGrid->addWidget(m_F_p_MakeWeek(objForm), 0, 1);
    pGrid->setColumnStretch(0, 1);
    pGrid->setColumnStretch(1, 4);
}

QWidget* Page::m_F_p_MakeTree(CForm& objForm)
{
    CFormGroup grp(objForm, CameraText);
    vm_pTree = new CCameraTree;
    objForm.m_F_o_Texts().m_S_Add(CameraText, [this](const QString& s) { vm_pTree->setAccessibleName(s); });
    grp.m_S_AddWide(vm_pTree, "Cameras");
    return grp.m_F_p_Box();
}

QWidget* Page::m_F_p_MakeWeek(CForm& objForm)
{
    CFormGroup grp(objForm, ScheduleText);
    vm_pGrid = new CTimeListCtrl;
    vm_pGrid->vm_bViewOnly = false;
    vm_pGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    vm_pGrid->m_S_SetTeller([this](int nDay, const TIME_STATE& st) { return m_F_s_Told(nDay, st); });
    objForm.m_F_o_Texts().m_S_Add(ScheduleText, [this](const QString& s) { vm_pGrid->setAccessibleName(s); });
    grp.m_S_AddWide(vm_pGrid, "Week");
    auto* const pLegend = new CColorLegend;
    for (const stDef_RecordType& st : stDef_RecordType::s_F_ar_All())
        objForm.m_F_o_Texts().m_S_AddText(pLegend->m_F_p_Add(ColorOf(st.nColor)), st.stText);
    grp.m_S_AddWide(pLegend, "Legend");
    m_S_MakeRecords(objForm);
    grp.m_S_AddWide(vm_pRecords, "Records");
    m_S_MakeButtons(grp);
    return grp.m_F_p_Box();
}

void Page::m_S_MakeRecords(CForm& objForm)
{
    vm_pRecords = new CItemList;
    vm_pRecords->m_S_SetColumns(QList<int>(std::ssize(g_aColumns), ColumnWidth));
    for (int nColumn = 0; const Text& st : g_aColumns) {
        objForm.m_F_o_Texts().m_S_Add(
            st, [this, nColumn](const QString& s) { vm_pRecords->m_S_SetColumnText(nColumn, s); });
        ++nColumn;
    }
    objForm.m_F_o_Texts().m_S_Add(ScheduleText, [this](const QString& s) { vm_pRecords->setAccessibleName(s); });
}

void Page::m_S_MakeButtons(CFormGroup& grp)
{
    const QList<QPushButton*> arButtons = grp.m_F_ar_Buttons({{Text{"Add", "Add"}, "Add"},
                                                              {Text{"Delete", "Delete"}, "Delete"},
                                                              {Text{"Setting", "Setting"}, "Setting"},
                                                              {Text{"Copy", "Copy"}, "Copy"},
                                                              {Text{"Undo", "Undo"}, "Undo"},
                                                              {Text{"Redo", "Redo"}, "Redo"}});
    vm_arForDay = {arButtons[0], arButtons[3]};
    vm_arForRecord = {arButtons[1], arButtons[2]};
    connect(arButtons[0], &QPushButton::clicked, this, &Page::m_S_Add);
    connect(arButtons[1], &QPushButton::clicked, this, &Page::m_S_Delete);
    connect(arButtons[2], &QPushButton::clicked, this, &Page::m_S_Setting);
    connect(arButtons[3], &QPushButton::clicked, this, &Page::m_S_Copy);
    const auto Follow = [this](QPushButton* pButton, auto fnStep, auto fnSignal) {
        connect(pButton, &QPushButton::clicked, this, [=, this] {
            if (m_F_b_CanEdit())
                (vm_objUndo.*fnStep)();
        });
        pButton->setEnabled(false);
        connect(&vm_objUndo, fnSignal, this, [=, this](bool bCan) { m_S_Enable({pButton}, bCan); });
    };
    Follow(arButtons[4], &QUndoStack::undo, &QUndoStack::canUndoChanged);
    Follow(arButtons[5], &QUndoStack::redo, &QUndoStack::canRedoChanged);
}

void Page::m_S_Connect()
{
    connect(vm_pTree, &CCameraTree::S_Chosen, this, &Page::m_S_ChooseCamera);
    connect(vm_pGrid, &CTimeListCtrl::S_Changed, this, &Page::m_S_OnBlock);
    connect(vm_pGrid, &CTimeListCtrl::S_Selected, this, &Page::m_S_Add);
    connect(vm_pGrid, &CTimeListCtrl::S_DoubleClicked, this, &Page::m_S_Setting);
    connect(vm_pGrid, &QTableWidget::itemSelectionChanged, this, [this] {
        if (vm_pGrid->selectionModel()->selectedRows().isEmpty())
            m_S_OnNoDay();
    });
    connect(vm_pRecords, &CItemList::S_Selected, this, &Page::m_S_ShowRecord);
    connect(vm_pRecords, &CItemList::cellDoubleClicked, this, &Page::m_S_Setting);
    m_S_AddKeys();
}

// They press the buttons, so that they do what those do, and nothing where those are off.
void Page::m_S_AddKeys()
{
    const struct
    {
        const char* pszButton;
        QList<QKeySequence> arKeys;
        QList<QWidget*> arWithin;
    } aRows[] = {
        {"Add", {Qt::Key_Insert}, {vm_pGrid, vm_pRecords}},
        {"Delete", {Qt::Key_Delete}, {vm_pGrid, vm_pRecords}},
        {"Setting", {Qt::Key_Return, Qt::Key_Enter}, {vm_pGrid, vm_pRecords}},
        {"Copy", {QKeySequence(Qt::CTRL | Qt::Key_C)}, {vm_pGrid, vm_pRecords}},
        {"Undo", {QKeySequence(Qt::CTRL | Qt::Key_Z)}, {this}},
        {"Redo", {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}, {this}},
    };
    for (const auto& stRow : aRows) {
        auto* const pButton = findChild<QPushButton*>(QString::fromLatin1(stRow.pszButton));
        pButton->setToolTip(u"%1 (%2)"_s.arg(pButton->text(), stRow.arKeys.first().toString(QKeySequence::NativeText)));
        for (QWidget* const pWidget : stRow.arWithin) {
            for (const QKeySequence& objKey : stRow.arKeys) {
                auto* const pKey = new QShortcut(objKey, pWidget);
                pKey->setContext(Qt::WidgetWithChildrenShortcut);
                connect(pKey, &QShortcut::activated, pButton, &QPushButton::click);
            }
        }
    }
}

QString Page::m_F_s_Told(int nDay, const TIME_STATE& stState) const
{
    const stDef_RecordType* const pType = stDef_RecordType::s_F_p_OfColor(stState.nColor);
    return m_F_s_Line(BlockText, u"%1"_s)
        .arg(m_F_s_Line(g_aDays[nDay]), TimeLine::s_F_s_Clock(stState.nStart), TimeLine::s_F_s_Clock(stState.nEnd),
             pType ? m_F_s_Line(pType->stText) : u"?"_s);
}

void Page::m_S_Opened()
{
    m_bInited = true;
    CScheduleWeek::Labels arLabels;
    std::transform(std::begin(g_aDays), std::end(g_aDays), arLabels.begin(),
                   [this](const Text& st) { return m_F_s_Line(st); });
    vm_objWeek.m_S_SetGrid(vm_pGrid, arLabels);
    m_S_FitGrid(arLabels);
    m_S_Connect();
    m_S_Enable(vm_arForDay + vm_arForRecord, false);
    if (vm_pNvr->vm_xmlCamera.m_F_b_IsOpen() && vm_objSchedule.m_F_b_IsOpen())
        m_S_Rebuild();
}

// All of the week is to be seen: it neither scrolls nor takes room that the records could have.
void Page::m_S_FitGrid(const CScheduleWeek::Labels& arLabels)
{
    int nLabels = LabelWidth * logicalDpiX() / 96;
    for (const QString& s : arLabels)
        nLabels = std::max(nLabels, vm_pGrid->fontMetrics().horizontalAdvance(s) + vm_pGrid->fontMetrics().height());
    const int nBars = BarWidth * logicalDpiX() / 96, nFrame = 2 * vm_pGrid->frameWidth();
    vm_pGrid->m_S_SetWidths(nLabels, nBars);
    vm_pGrid->setMinimumWidth(nLabels + nBars + nFrame);
    vm_pRecords->setMinimumWidth(static_cast<int>(std::ssize(g_aColumns)) * ColumnWidth * logicalDpiX() / 96 + nFrame);
    vm_pGrid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    vm_pGrid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    vm_pGrid->setFixedHeight(vm_pGrid->horizontalHeader()->sizeHint().height() + nFrame +
                             CScheduleDocument::Days * vm_pGrid->verticalHeader()->defaultSectionSize());
}

void Page::m_S_CameraAdded(int nCamera)
{
    m_S_FollowCameras([&] { vm_objSchedule.m_S_CameraAdded(nCamera); });
}

void Page::m_S_CameraRemoved(int nCamera, int nCount)
{
    m_S_FollowCameras([&] { vm_objSchedule.m_S_CameraRemoved(nCamera, nCount); });
}

void Page::m_S_CameraCopied(int nFrom, int nTo)
{
    m_S_FollowCameras([&] { vm_objSchedule.m_S_CameraCopied(nFrom, nTo); });
}

void Page::m_S_CameraSwitched(int nFirst, int nSecond)
{
    m_S_FollowCameras([&] { vm_objSchedule.m_S_CameraSwitched(nFirst, nSecond); });
}

void Page::m_S_CameraUpdated(int nCamera)
{
    if (m_bInited && nCamera < vm_pTree->m_F_n_Count())
        vm_pTree->m_S_SetName(nCamera, m_F_s_CameraName(nCamera));
}

// A step that can be taken back goes by the index of its camera, which may be another one's from now on.
void Page::m_S_FollowCameras(const std::function<void()>& fnChange)
{
    if (!vm_objSchedule.m_F_b_IsOpen())
        return;
    fnChange();
    vm_objUndo.clear();
    if (m_bInited)
        m_S_Rebuild();
}

QString Page::m_F_s_CameraName(int nCamera) const
{
    return vm_pNvr->vm_xmlCamera.m_F_s_Value(m_F_o_Cameras().m_F_s_Path(nCamera), u"Name"_s);
}

CNumberedNodes Page::m_F_o_Cameras() const
{
    return {&vm_pNvr->vm_xmlCamera, u"/root/Camera"_s, u"Cam"_s};
}

void Page::m_S_Rebuild()
{
    vm_pTree->m_S_Clear();
    const int nCount = m_F_o_Cameras().m_F_n_Count();
    for (int nCamera = 0; nCamera < nCount; ++nCamera)
        vm_pTree->m_S_Append(m_F_s_CameraName(nCamera));
    vm_pRecords->m_S_Clear();
    vm_pTree->m_S_Select(nCount > 0 ? 0 : -1);
    vm_objWeek.m_S_RebuildBars(vm_pTree->m_F_n_Selected());
    m_S_Enable(vm_arForDay + vm_arForRecord, false);
    m_S_ShowDay(0, 0);
}

// A click on the camera that is shown already finds a new place for records that had none.
void Page::m_S_ChooseCamera(int nCamera)
{
    if (nCamera < 0)
        return;
    if (nCamera != vm_objWeek.m_F_n_Camera() || !vm_objWeek.m_F_b_Whole())
        vm_objWeek.m_S_RebuildBars(nCamera);
    m_S_ShowDay(0, 0);
}

// A click on a day tells of block 0, also where there is none.
void Page::m_S_OnBlock(int nBlock, int nDay)
{
    const int nRecord = vm_objWeek.m_F_n_RecordOf(nDay, nBlock);
    m_S_ShowDay(nRecord < 0 ? nBlock : nRecord, nDay);
}

void Page::m_S_OnNoDay()
{
    const QSignalBlocker objQuiet(vm_pRecords);
    vm_pRecords->clearSelection();
    CTimeStateWnd::s_S_Focus(nullptr);
    m_S_Enable(vm_arForDay + vm_arForRecord, false);
    m_S_ClearNote();
}

void Page::m_S_ShowDay(int nItem, int nDay)
{
    if (vm_pTree->m_F_n_Selected() < 0)
        return;
    if (std::exchange(m_nCurDay, nDay) != nDay)
        vm_objWeek.m_S_ClearSelect(nDay);
    m_S_TakeBlock(nItem, nDay);
    m_S_ListRecords();
    vm_pRecords->setAccessibleName(m_F_s_Line(g_aDays[nDay]));
    vm_pRecords->m_S_Select(nItem);
}

// A drag is one step however many it is told in: pressing a block tells of it before it is changed.
void Page::m_S_TakeBlock(int nItem, int nDay)
{
    const int nCamera = vm_objWeek.m_F_n_Camera();
    const TIME_STATE* const pBlock = vm_objWeek.m_F_p_Block(nDay, nItem);
    if (!pBlock || !vm_objSchedule.m_F_b_IsOpen())
        return;
    const TIME_STATE stStored = vm_objSchedule.m_F_o_Record(nCamera, nDay, nItem).m_F_o_Block();
    const bool bChanged = pBlock->nStart != stStored.nStart || pBlock->nEnd != stStored.nEnd;
    const bool bDragging = CTimeStateBar::s_F_b_Dragging();
    const bool bNewStep = bChanged && !(bDragging && vm_bDragNoted);
    const QString sBefore = bNewStep ? vm_objSchedule.m_F_s_Week(nCamera) : QString();
    if (bChanged)
        vm_objSchedule.m_S_SetSpan(nCamera, nDay, nItem, static_cast<int>(pBlock->nStart / TimeLine::Minute),
                                   static_cast<int>(pBlock->nEnd / TimeLine::Minute));
    if (bNewStep)
        m_S_NoteStep(sBefore, nItem, nDay);
    vm_bDragNoted = bChanged && bDragging;
}

void Page::m_S_ListRecords()
{
    const QSignalBlocker objQuiet(vm_pRecords);
    const int nCount = vm_objSchedule.m_F_n_Count(vm_objWeek.m_F_n_Camera(), m_nCurDay);
    vm_pRecords->setRowCount(std::min(nCount, vm_pRecords->rowCount()));
    for (int nRecord = 0; nRecord < nCount; ++nRecord) {
        const stDef_ScheduleRecord st = vm_objSchedule.m_F_o_Record(vm_objWeek.m_F_n_Camera(), m_nCurDay, nRecord);
        const QStringList arTexts = {st.m_F_s_StartText(), st.m_F_s_EndText(), m_F_s_TypeOf(st)};
        if (nRecord < vm_pRecords->rowCount())
            vm_pRecords->m_S_SetTexts(nRecord, arTexts);
        else
            vm_pRecords->m_S_Insert(nRecord, arTexts, nRecord);
    }
}

QString Page::m_F_s_TypeOf(const stDef_ScheduleRecord& st) const
{
    const stDef_RecordType* const pType = stDef_RecordType::s_F_p_Of(st.nMode);
    QString sType = pType ? m_F_s_Line(pType->stText) : QString();
    if (st.nMode != InputMode)
        return sType;
    if (st.nDICam == stDef_ScheduleRecord::LocalInput)
        sType += u' ' + m_F_s_Line(LocalText);
    return sType + u' ' + m_F_s_Line(st.nDIMode == TrueState ? TrueText : FalseText);
}

void Page::m_S_ShowRecord(int nRecord)
{
    if (vm_pTree->m_F_n_Selected() >= 0) {
        const QSignalBlocker objQuiet(vm_pGrid);
        vm_pGrid->setCurrentCell(m_nCurDay, 0);
        m_S_Enable(vm_arForDay, true);
    }
    const bool bChosen = nRecord >= 0 && vm_objSchedule.m_F_b_IsOpen();
    const TIME_STATE* const pBlock = bChosen ? vm_objWeek.m_F_p_Block(m_nCurDay, nRecord) : nullptr;
    CTimeStateWnd::s_S_Focus(pBlock ? pBlock->pWnd.data() : nullptr);
    m_S_Enable(vm_arForRecord, bChosen);
    m_S_Tell(bChosen && !pBlock ? m_F_s_Line(NoBlockText) : QString());
}

void Page::m_S_Enable(const QList<QPushButton*>& arButtons, bool bEnabled)
{
    for (QPushButton* const pButton : arButtons)
        CForm::s_S_EnableButton(pButton, bEnabled, vm_pGrid);
}

// Nothing may go while the mouse holds it.
bool Page::m_F_b_CanEdit() const
{
    return vm_pTree->m_F_n_Selected() >= 0 && m_nCurDay >= 0 && vm_objSchedule.m_F_b_IsOpen() &&
           !CTimeStateBar::s_F_b_Dragging();
}

bool Page::m_F_b_RunDialog(TIME_STATE& stItem, int nDay, int& nRecord)
{
    CDlgSetupPageSystemSetting_Schedule_Setting objDialog(vm_pNvr, &stItem, vm_objWeek.m_F_n_Camera(), nDay, nRecord,
                                                          this);
    const bool bOk = CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog) == QDialog::Accepted;
    nRecord = objDialog.m_F_n_Record();
    return bOk;
}

// For the time that was selected last, on whichever day; else for all of the current day.
void Page::m_S_Add()
{
    if (!m_F_b_CanEdit())
        return;
    int nDay = CTimeStateBar::s_nSelectBar;
    TIME_STATE stItem{{}, CTimeStateBar::s_stSelect.nStart, CTimeStateBar::s_stSelect.nEnd};
    vm_objWeek.m_S_ClearSelect(0);
    if (nDay < 0 || stItem.nStart == stItem.nEnd)
        stItem = {{}, 0, TimeLine::LastTime};
    if (nDay < 0)
        nDay = m_nCurDay;
    const int nCamera = vm_objWeek.m_F_n_Camera();
    const QString sBefore = vm_objSchedule.m_F_s_Week(nCamera);
    int nRecord = vm_objSchedule.m_F_n_Count(nCamera, nDay);
    if (!m_F_b_RunDialog(stItem, nDay, nRecord))
        return;
    vm_objWeek.m_S_Insert(nDay, nRecord, stItem);
    m_S_NoteStep(sBefore, nRecord, nDay);
    m_S_ShowDay(nRecord, nDay);
}

void Page::m_S_Setting()
{
    int nRecord = vm_pRecords->m_F_n_Selected();
    if (!m_F_b_CanEdit() || nRecord < 0)
        return;
    const int nCamera = vm_objWeek.m_F_n_Camera();
    const QString sBefore = vm_objSchedule.m_F_s_Week(nCamera);
    TIME_STATE stItem = vm_objSchedule.m_F_o_Record(nCamera, m_nCurDay, nRecord).m_F_o_Block();
    if (!m_F_b_RunDialog(stItem, m_nCurDay, nRecord))
        return;
    m_S_NoteStep(sBefore, nRecord, m_nCurDay);
    vm_objWeek.m_S_RebuildBars(nCamera);
    m_S_ShowDay(nRecord, m_nCurDay);
}

void Page::m_S_Delete()
{
    const int nRecord = vm_pRecords->m_F_n_Selected(), nCamera = vm_objWeek.m_F_n_Camera();
    if (!m_F_b_CanEdit() || nRecord < 0)
        return;
    const QString sBefore = vm_objSchedule.m_F_s_Week(nCamera);
    vm_objSchedule.m_S_Delete(nCamera, m_nCurDay, nRecord);
    m_S_NoteStep(sBefore, nRecord, m_nCurDay);
    vm_objWeek.m_S_RebuildBars(nCamera);
    m_S_ShowDay(nRecord - 1, m_nCurDay);
}

void Page::m_S_Copy()
{
    if (!m_F_b_CanEdit() || !CPrompts::s_F_b_AskToDestroy(this, m_F_s_Text(CopyWeekText), m_F_s_Text(WarningText)))
        return;
    const int nCamera = vm_objWeek.m_F_n_Camera();
    const QString sBefore = vm_objSchedule.m_F_s_Week(nCamera);
    vm_objSchedule.m_S_CopyDay(nCamera, m_nCurDay);
    m_S_NoteStep(sBefore, 0, m_nCurDay);
    vm_objWeek.m_S_RebuildBars(nCamera);
    m_S_ShowDay(0, m_nCurDay);
}

void Page::m_S_NoteStep(const QString& sWeekBefore, int nItem, int nDay)
{
    const int nCamera = vm_objWeek.m_F_n_Camera();
    vm_objUndo.push(new CScheduleStep(vm_objSchedule, nCamera, sWeekBefore, [=, this] {
        vm_pTree->m_S_Select(nCamera);
        vm_objWeek.m_S_RebuildBars(nCamera);
        m_S_ShowDay(std::min(nItem, vm_objSchedule.m_F_n_Count(nCamera, nDay) - 1), nDay);
    }));
}
