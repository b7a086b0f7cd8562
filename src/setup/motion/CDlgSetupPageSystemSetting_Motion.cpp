#include "setup/motion/CDlgSetupPageSystemSetting_Motion.h"

#include <QGridLayout>
#include <QGroupBox>
#include <algorithm>
#include <utility>

#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "setup/CCameraTable.h"
#include "setup/CCameraTree.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CNumberedNodes.h"
#include "toolkit/user/CPrompts.h"

using namespace Qt::StringLiterals;

using Page = CDlgSetupPageSystemSetting_Motion;

namespace {

constexpr Text CameraText{"Camera", "Camera"};
constexpr Text MotionText{"MotionDetect", "Motion Detect"};
constexpr char16_t ReloadText[] = u"Motion Detection CGI Error"; // not translated

} // namespace

Page::CDlgSetupPageSystemSetting_Motion(CWndNvrEmbedded* pNvr) : CNvrPage(pNvr) {}

Page::~CDlgSetupPageSystemSetting_Motion()
{
    m_S_Close(false);
}

void Page::m_S_Make(CForm& objForm)
{
    vm_bInit = true;
    CFormGroup grpTree(objForm, CameraText);
    vm_pTree = new CCameraTree;
    objForm.m_F_o_Texts().m_S_Add(CameraText, [this](const QString& s) { vm_pTree->setAccessibleName(s); });
    grpTree.m_S_AddWide(vm_pTree, "Cameras");
    CFormGroup grpMotion(objForm, MotionText);
    vm_pPlace = new QWidget;
    (new QGridLayout(vm_pPlace))->setContentsMargins(0, 0, 0, 0);
    grpMotion.m_S_AddWide(vm_pPlace, "MotionPlace");
    auto* const pGrid = new QGridLayout(this);
    pGrid->addWidget(grpTree.m_F_p_Box(), 0, 0);
    pGrid->addWidget(grpMotion.m_F_p_Box(), 0, 1);
    pGrid->setColumnStretch(0, 1);
    pGrid->setColumnStretch(1, 4);
    connect(vm_pTree, &CCameraTree::S_Chosen, this, &Page::m_S_Open);
}

void Page::m_S_Opened()
{
    m_S_FillTree();
    m_S_Open(0);
}

void Page::m_S_FillTree()
{
    if (!vm_pNvr->vm_xmlCamera.m_F_b_IsOpen())
        return;
    const CNumberedNodes objCameras(&vm_pNvr->vm_xmlCamera, u"/root/Camera"_s, u"Cam"_s);
    vm_pTree->m_S_Clear();
    for (int i = 0; i < objCameras.m_F_n_Count(); ++i)
        vm_pTree->m_S_Append(vm_pNvr->vm_xmlCamera.m_F_s_Value(objCameras.m_F_s_Path(i), u"Name"_s));
}

// A camera without a driver can be chosen, and shows nothing. What was changed in the window that was open is dropped,
// also where it is the same camera's.
void Page::m_S_Open(int nPosition)
{
    if (nPosition < 0 || nPosition >= vm_pTree->m_F_n_Count())
        return;
    vm_pTree->m_S_Select(nPosition);
    m_S_Close(false);
    vm_pCamObj = vm_pCameras->m_F_p_Camera(nPosition);
    if (!vm_pCamObj)
        return;
    vm_nCamera = vm_pCamObj->m_nCamIndex;
    vm_pCamObj->m_S_ShowMotion(vm_pPlace); // the page may be cancelled, and the window closed, while it asks
}

// An object that was released meanwhile has closed its window itself.
void Page::m_S_Close(bool bSave)
{
    const bool bOpen = std::exchange(vm_nCamera, -1) != -1;
    CCamObj_Base* const pCamObj = std::exchange(vm_pCamObj, nullptr);
    const auto& arObjects = vm_pCameras->m_arrCamObj;
    if (bOpen && std::find(arObjects.begin(), arObjects.end(), pCamObj) != arObjects.end())
        pCamObj->m_S_CloseMotion(bSave);
}

// The message stands here whatever has happened: no test precedes it. Whatever camera the change was of, the window
// that is open closes, since another one opens next.
void Page::m_S_RefreshCameras(int /*nCamera*/)
{
    if (!vm_bInit)
        return;
    m_S_Close(false);
    CPrompts::s_S_Message(this, QString::fromUtf16(ReloadText), u"Error"_s);
    m_S_FillTree();
    m_S_Open(0);
}

bool Page::OnApply()
{
    m_S_Close(true);
    return CNvrPage::OnApply();
}

void Page::OnCancel()
{
    m_S_Close(false);
    CNvrPage::OnCancel();
}
