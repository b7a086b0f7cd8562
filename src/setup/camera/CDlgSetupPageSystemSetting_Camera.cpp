#include "setup/camera/CDlgSetupPageSystemSetting_Camera.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "setup/CCameraTable.h"
#include "setup/CCameraTree.h"
#include "setup/camera/CCameraAutoSetting.h"
#include "setup/camera/CCameraForm.h"
#include "setup/camera/CCameraList.h"
#include "setup/camera/CCameraMenu.h"
#include "setup/camera/CDlgSetupPageSystemSetting_Camera_AutoSetting.h"
#include "setup/camera/CDlgSetupPageSystemSetting_Camera_Template.h"
#include "setup/camera/stDef_TemplateLists.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"
#include "toolkit/user/CWaitCursor.h"

using namespace Qt::StringLiterals;

using Page = CDlgSetupPageSystemSetting_Camera;

namespace {

constexpr Text DetectText{"Detect", "Detect"};
constexpr Text FullText{"CameraMAX", "NVR Camera List Is Full!"};
constexpr Text NoNameText{"CameraNameEmpty", "Camera Name Is Empty, Do You Want To Use Default Name?"};
constexpr Text BadDataText{"ConfigurationDataError", "Configuration Data Error. Please Re-check!"};
constexpr Text NoReplyText{"InputFail", "Please Check Input Data."};
constexpr Text NotDetectedText{"DetectFail", "Detect Device Fail."};
constexpr Text DetectedText{"DetectSuccess", "Success!"};
constexpr Text NoCameraText{"NoCamera", "No Camera."};
constexpr Text NobodyText{"NoCameraReached", "The recorder reached no camera with these data."};
constexpr Text FoundText{"CamerasFound", "Cameras found: %1"};
constexpr Text SearchingText{"SearchingCameras", "The recorder looks for cameras."};
constexpr Text NoSearchText{"NoSearchReply", "The recorder did not answer the search."};
constexpr Text AddedText{"CamerasAdded", "Cameras added: %1"};
constexpr Text NoRoomText{"CamerasNoRoom", "The camera list is full, so no more were added."};
constexpr Text RefusedText{"CamerasRefused", "Added, but refused the account: %1"};
constexpr Text UnreachedText{"CamerasUnreached", "Added without being reached: %1"};

} // namespace

Page::CDlgSetupPageSystemSetting_Camera(CWndNvrEmbedded* pNvr) : CNvrPage(pNvr) {}

Page::~CDlgSetupPageSystemSetting_Camera() = default;

void Page::m_S_Opened()
{
    vm_pCameras = std::make_unique<CCameraList>(vm_pNvr, vm_pTable, vm_pTree);
    vm_pCameras->m_S_ListStored();
    m_S_ShowTemplate();
    if (vm_pNvr->vm_xmlSystemInfo.m_F_b_IsOpen())
        vm_pAdd->setEnabled(vm_pCameras->m_F_b_HasRoom());
    m_S_Connect();
}

bool Page::OnApply()
{
    m_S_DropRows();
    return true;
}

void Page::OnCancel()
{
    m_S_DropRows();
}

void Page::m_S_Make(CForm& objForm)
{
    auto* const pGrid = new QGridLayout(this);
    pGrid->addWidget(m_F_p_MakeList(objForm), 0, 0);
    pGrid->addLayout(m_F_p_MakeForm(objForm), 0, 1);
    pGrid->addWidget(m_F_p_MakeSearch(objForm), 1, 0, 1, 2);
    pGrid->setColumnStretch(0, 2);
    pGrid->setColumnStretch(1, 5);
    pGrid->setRowStretch(1, 1);
}

QWidget* Page::m_F_p_MakeList(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Camera", "Camera"});
    vm_pTree = new CCameraTree;
    objForm.m_F_o_Texts().m_S_Add(Text{"Camera", "Camera"},
                                  [this](const QString& s) { vm_pTree->setAccessibleName(s); });
    grp.m_S_AddWide(vm_pTree, "Cameras");
    const auto arButtons = grp.m_F_ar_Buttons({{Text{"AutoSetting", "Auto Setting"}, "AutoSettingButton"},
                                               {Text{"QuickSetup", "Quick Setup"}, "QuickSetup"}});
    vm_pAutoSetting = arButtons[0];
    connect(vm_pAutoSetting, &QPushButton::clicked, this, &Page::m_S_AutoSetting);
    connect(arButtons[1], &QPushButton::clicked, this, &Page::m_S_QuickSetup);
    return grp.m_F_p_Box();
}

QLayout* Page::m_F_p_MakeForm(CForm& objForm)
{
    const struct
    {
        Text stText;
        const char* pszName;
        void (Page::*fnClicked)();
    } arRows[] = {
        {Text{"Add", "Add"}, "Add", &Page::m_S_Add},
        {Text{"Delete", "Delete"}, "Delete", &Page::m_S_Delete},
        {Text{"Update", "Update"}, "Update", &Page::m_S_Update},
        {Text{"Clear", "Clear"}, "Clear", &Page::m_S_ResetForm},
        {DetectText, "Detect", &Page::m_S_Detect},
        {Text{"Parameter", "Parameter"}, "Parameter", &Page::m_S_ShowParameter},
    };
    auto* const pGrid = new QGridLayout;
    vm_pForm = new CCameraForm(this);
    pGrid->addWidget(vm_pForm->m_F_p_Make(objForm), 0, 0, 2, 1);
    auto* const pButtons = new QVBoxLayout;
    QList<QPushButton*> arMade;
    for (const auto& stRow : arRows) {
        QPushButton* const pButton = objForm.m_F_p_Button(stRow.stText, QString::fromLatin1(stRow.pszName));
        pButtons->addWidget(pButton);
        connect(pButton, &QPushButton::clicked, this, stRow.fnClicked);
        arMade.append(pButton);
    }
    vm_pAdd = arMade[0];
    vm_arShownButtons = {arMade[1], arMade[2]};
    vm_pParameter = arMade[5];
    objForm.m_S_SetEnterButtons({arMade[2], arMade[0]}); // Update while a camera is shown, else Add
    pButtons->addStretch();
    pGrid->addLayout(pButtons, 0, 1);
    pGrid->addWidget(m_F_p_MakeTemplate(objForm), 1, 1);
    pGrid->setColumnStretch(0, 1);
    m_S_EnableShown(false);
    return pGrid;
}

QWidget* Page::m_F_p_MakeTemplate(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"TemplateSetting", "Template Setting"});
    const auto stLists = stDef_TemplateLists::s_F_o_Make(grp, vm_objTemplate);
    connect(stLists.pResolution, &QComboBox::activated, this,
            [this] { m_S_StoreTemplate(&stDef_CameraTemplate::nResolution); });
    connect(stLists.pFps, &QComboBox::activated, this, [this] { m_S_StoreTemplate(&stDef_CameraTemplate::nFPS); });
    QPushButton* const pAdvanced = grp.m_F_p_Button(Text{"Advanced", "Advanced"}, "Advanced");
    connect(pAdvanced, &QPushButton::clicked, this, &Page::m_S_EditTemplate);
    return grp.m_F_p_Box();
}

QWidget* Page::m_F_p_MakeSearch(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Search", "Search"});
    vm_pFound = new CCameraSearchList;
    vm_pFound->m_S_AddTexts(objForm.m_F_o_Texts());
    objForm.m_F_o_Texts().m_S_Add(Text{"Search", "Search"},
                                  [this](const QString& s) { vm_pFound->setAccessibleName(s); });
    grp.m_S_AddWide(vm_pFound, "Found");
    QPushButton* const pSearch = grp.m_F_p_Button(Text{"Search", "Search"}, "Search");
    connect(pSearch, &QPushButton::clicked, this, &Page::m_S_SearchCameras);
    return grp.m_F_p_Box();
}

void Page::m_S_Connect()
{
    connect(vm_pTree, &CCameraTree::S_Chosen, this, &Page::m_S_ClearNote);
    connect(vm_pTree, &CCameraTree::S_EnableChanged, this, &Page::m_S_ClearNote);
    connect(vm_pFound, &CCameraSearchList::S_RowChosen, this, &Page::m_S_ClearNote);
    connect(vm_pTree, &CCameraTree::S_Chosen, this, &Page::m_S_ShowCamera);
    connect(vm_pTree, &CCameraTree::S_EnableChanged, this,
            [this](int nIndex, bool bEnabled) { vm_pCameras->m_S_SetEnabled(nIndex, bEnabled); });
    connect(vm_pTree, &CCameraTree::S_MenuWanted, this, &Page::m_S_ShowMenu);
    connect(vm_pFound, &CCameraSearchList::S_RowChosen, this, &Page::m_S_ShowFound);
}

void Page::m_S_ShowTemplate()
{
    vm_objTemplate.m_S_Show(stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem));
}

void Page::m_S_StoreTemplate(int stDef_CameraTemplate::*pMember)
{
    vm_objTemplate.m_F_o_Taken().m_S_WriteOne(vm_pNvr->vm_xmlSystem, pMember);
}

void Page::m_S_EnableAdding()
{
    vm_pAdd->setEnabled(vm_pCameras->m_F_b_HasRoom());
    vm_pAutoSetting->setEnabled(vm_pCameras->m_F_b_HasRoom());
}

// One without a driver has no parameters that could be shown.
void Page::m_S_EnableShown(bool bShown)
{
    for (QPushButton* const pButton : vm_arShownButtons)
        pButton->setEnabled(bShown);
    vm_pParameter->setEnabled(bShown && vm_pTable->m_F_p_Camera(vm_pTree->m_F_n_Selected()));
}

void Page::m_S_ShowCamera(int nIndex)
{
    if (nIndex < 0)
        return;
    const CWaitCursor objWait;
    vm_pForm->m_S_MarkAddress(false);
    vm_pForm->m_S_Show(vm_pCameras->m_F_o_Shown(nIndex));
    m_S_EnableShown(true);
}

void Page::m_S_ShowFound(const stDef_SearchIPC* pRow)
{
    m_S_EnableShown(false);
    if (!pRow)
        return;
    vm_pForm->m_S_MarkAddress(pRow->m_F_b_LinkLocal());
    vm_pForm->m_S_Show(pRow->m_F_o_Camera(stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem)));
}

void Page::m_S_ResetForm()
{
    vm_pForm->m_S_Reset();
    m_S_EnableShown(false);
}

bool Page::m_F_b_CheckInput(bool bVendorKnown)
{
    if (!vm_pForm->m_F_b_HasVendor() && !bVendorKnown)
        return false;
    const stDef_CameraValues st = vm_pForm->m_F_o_Values();
    if (st.sName.isEmpty()) {
        if (!CPrompts::s_F_b_Ask(this, vm_pNvr->m_F_s_Text(NoNameText), vm_pNvr->m_F_s_Text(nsTexts::Error)))
            return false;
        vm_pForm->m_S_SetName(st.sModel + u' ' + st.sIP);
    }
    if (vm_pForm->m_F_b_Complete())
        return true;
    m_S_Message(BadDataText, nsTexts::Error);
    vm_pForm->m_S_FocusProblem();
    return false;
}

void Page::m_S_Add()
{
    if (!vm_pForm->m_F_b_HasVendor())
        return;
    if (!vm_pCameras->m_F_b_HasRoom()) {
        m_S_EnableAdding();
        m_S_Message(FullText, nsTexts::Error);
        return;
    }
    if (!m_F_b_CheckInput(false) || !vm_pNvr->vm_xmlCamera.m_F_b_IsOpen())
        return;
    const CWaitCursor objWait;
    stDef_CameraValues stCamera = vm_pForm->m_F_o_Values();
    stDef_CameraReplies stReplies;
    CPageRequests objRequests(vm_pNvr, this, nsTexts::AskingCamera);
    if (!CCameraProbe(objRequests).m_F_b_DetectAndSupport(stCamera, stReplies)) {
        m_S_Tell(m_F_s_Line(NobodyText));
        return;
    }
    if (!vm_pCameras->m_F_b_AddDescribed(stCamera, stReplies))
        return;
    vm_pForm->m_S_SetModel(stCamera.sModel);
    vm_pTree->setFocus();
    m_S_EnableShown(true);
    m_S_EnableAdding();
}

void Page::m_S_Delete()
{
    const int nIndex = vm_pTree->m_F_n_Selected();
    if (nIndex < 0)
        return;
    vm_pCameras->m_S_Delete(nIndex);
    if (vm_pCameras->m_F_b_HasRoom())
        m_S_EnableAdding();
    m_S_ResetForm();
}

void Page::m_S_Update()
{
    const int nIndex = vm_pTree->m_F_n_Selected();
    if (nIndex < 0)
        return;
    // One of an unknown vendor keeps it as long as no other is chosen.
    const bool bKept = !vm_pForm->m_F_b_HasVendor() && !vm_pTable->m_F_p_Camera(nIndex);
    if (!m_F_b_CheckInput(bKept) || !vm_pNvr->vm_xmlCamera.m_F_b_IsOpen())
        return;
    const CWaitCursor objWait;
    stDef_CameraValues stCamera = vm_pForm->m_F_o_Values();
    if (bKept || vm_pCameras->m_F_n_Vendor(nIndex) == stCamera.nVendorID) {
        vm_pCameras->m_S_Update(nIndex, stCamera);
        return;
    }
    stDef_CameraReplies stReplies;
    CPageRequests objRequests(vm_pNvr, this, nsTexts::AskingCamera);
    if (!CCameraProbe(objRequests).m_F_b_DetectAndSupport(stCamera, stReplies)) {
        m_S_Tell(m_F_s_Line(NobodyText));
        return;
    }
    if (!vm_pCameras->m_F_b_Replace(nIndex, stCamera, stReplies))
        return;
    vm_pForm->m_S_SetModel(stCamera.sModel); // or the next update would write the old one
    vm_pTree->setFocus();
    m_S_EnableShown(true);
}

void Page::m_S_Detect()
{
    CXmlObj xmlReply;
    bool bReply = false;
    {
        CPageRequests objRequests(vm_pNvr, this, nsTexts::AskingCamera);
        bReply = CCameraProbe(objRequests).m_F_b_Detect(vm_pForm->m_F_o_Values(), xmlReply);
    }
    if (!bReply) {
        m_S_Message(NoReplyText, DetectText);
        return;
    }
    const auto Value = [&](const QString& sKey) { return xmlReply.m_F_s_Value(u"/root/Camera/Cam000"_s, sKey); };
    m_S_Message(stDef_CameraReplies::s_F_b_Recognized(xmlReply) ? DetectedText : NotDetectedText, DetectText);
    vm_pForm->m_S_SetModel(Value(u"Model"_s));
    vm_pForm->m_S_SetRtspPort(Value(u"RtspPort"_s));
}

void Page::m_S_ShowParameter()
{
    if (CCamObj_Base* const pCamera = vm_pTable->m_F_p_Camera(vm_pTree->m_F_n_Selected()))
        pCamera->m_S_ShowParameter(this);
}

void Page::m_S_EditTemplate()
{
    CDlgSetupPageSystemSetting_Camera_Template objDialog(vm_pNvr, this);
    if (CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog) == QDialog::Accepted)
        m_S_ShowTemplate();
}

void Page::m_S_QuickSetup()
{
    if (vm_pTree->m_F_n_Count() == 0) {
        m_S_Message(NoCameraText, nsTexts::Error);
        return;
    }
    if (vm_pTree->m_F_n_Selected() < 0) {
        vm_pTree->m_S_Select(0);
        m_S_ShowCamera(0);
    }
    const auto* const pButton = findChild<QPushButton*>(u"QuickSetup"_s);
    m_S_ShowMenu(pButton->mapToGlobal(pButton->rect().bottomLeft()));
}

void Page::m_S_ShowMenu(const QPoint& ptGlobal)
{
    const int nSelected = vm_pTree->m_F_n_Selected();
    QStringList arNames;
    for (int nIndex = 0; nIndex < vm_pTree->m_F_n_Count(); ++nIndex)
        arNames.append(vm_pCameras->m_F_s_Name(nIndex));
    const bool bCopyable = vm_pTable->m_F_p_Camera(nSelected) != nullptr;
    CCameraMenu::s_S_Run(this, *vm_pNvr, ptGlobal, arNames, nSelected, bCopyable,
                         {[this, nSelected](int nOther) { m_S_Switch(nSelected, nOther); },
                          [this, nSelected](int nOther) { vm_pCameras->m_S_Copy(nSelected, nOther); },
                          [this, nSelected] { vm_pCameras->m_S_CopyToAll(nSelected); }, [this] { m_S_RemoveAll(); }});
}

void Page::m_S_Switch(int nSelected, int nOther)
{
    vm_pCameras->m_S_Switch(nSelected, nOther);
    m_S_ShowCamera(nSelected);
}

void Page::m_S_RemoveAll()
{
    vm_pCameras->m_S_DeleteAll();
    if (vm_pCameras->m_F_b_HasRoom())
        m_S_EnableAdding();
    m_S_ResetForm();
}

void Page::m_S_DropRows()
{
    vm_pFound->m_S_Show({}, {}); // it borrows them
    m_listSearch.clear();
}

void Page::m_S_SearchCameras()
{
    CDlgSetupPageSystemSetting_Camera_AutoSetting objFilter(vm_pNvr, this);
    if (m_bQuickAdd && CUserSide::s_F_o_Get().m_F_n_RunModal(objFilter) != QDialog::Accepted) {
        m_bQuickAdd = false;
        return; // what was found before stays
    }
    m_S_DropRows();
    CPageRequests objRequests(vm_pNvr, this, SearchingText);
    CXmlObj xmlReply;
    if (CCameraProbe(objRequests).m_F_b_Search(xmlReply)) {
        m_S_ReadRows(xmlReply, [&](const stDef_SearchIPC& st) { return !m_bQuickAdd || objFilter.m_F_b_Passes(st); });
        m_S_Tell(m_F_s_Line(FoundText, QString::number(m_listSearch.size())));
    } else {
        m_S_Tell(m_F_s_Line(NoSearchText));
    }
    m_bQuickAdd = m_bQuickAdd && !m_listSearch.empty();
}

void Page::m_S_ReadRows(const CXmlObj& xmlReply, const std::function<bool(const stDef_SearchIPC&)>& fnPasses)
{
    CXmlNodeList objNodes = xmlReply.m_S_SelectNodesByKey(u"/root/IPC"_s);
    for (CXmlNode objNode = objNodes.m_F_o_NextNode(); !objNode.m_F_b_IsNull(); objNode = objNodes.m_F_o_NextNode()) {
        auto pRow = std::make_unique<stDef_SearchIPC>();
        pRow->m_S_Read(objNode);
        pRow->nVendorRow = vm_pForm->m_F_n_VendorRow(pRow->Vendor);
        if (fnPasses(*pRow))
            m_listSearch.push_back(std::move(pRow));
    }
    vm_pFound->m_S_Show(m_listSearch,
                        [this](const stDef_SearchIPC& st) { return vm_pForm->m_F_s_VendorName(st.nVendorRow); });
}

void Page::m_S_AutoSetting()
{
    int nShown = vm_pTree->m_F_n_Selected();
    m_bQuickAdd = true;
    m_S_SearchCameras();
    if (!m_bQuickAdd)
        return;
    const CWaitCursor objWait;
    const auto stResult = CCameraAutoSetting(vm_pNvr, vm_pCameras.get(), this).m_F_o_Run(m_listSearch);
    if (stResult.nAdded > 0)
        nShown = vm_pTree->m_F_n_Count() - 1;
    vm_pForm->m_S_MarkAddress(false);
    vm_pTree->m_S_Select(nShown);
    m_S_ShowCamera(nShown);
    m_S_EnableAdding();
    m_S_TellResult(stResult);
    vm_pTree->setFocus();
    m_bQuickAdd = false;
}

void Page::m_S_TellResult(const stDef_AutoSettingResult& stResult)
{
    QStringList arLines = {m_F_s_Line(AddedText, QString::number(stResult.nAdded))};
    if (stResult.bFull)
        arLines << m_F_s_Line(NoRoomText);
    if (!stResult.arRefused.isEmpty())
        arLines << m_F_s_Line(RefusedText, stResult.arRefused.join(u", "_s));
    if (!stResult.arUnreached.isEmpty())
        arLines << m_F_s_Line(UnreachedText, stResult.arUnreached.join(u", "_s));
    m_S_Tell(arLines.join(u'\n'));
}
