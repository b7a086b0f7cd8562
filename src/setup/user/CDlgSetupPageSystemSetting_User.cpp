#include "setup/user/CDlgSetupPageSystemSetting_User.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>
#include <string>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/controls/CCheckGrid.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

using Page = CDlgSetupPageSystemSetting_User;
using emDef_Row = CEntryTable::emDef_Row;

namespace {

constexpr Text TitleText{"User", "User"};
constexpr Text NameText{"Account", "User Name", "AccountUser"};
constexpr Text GroupText{"Group", "Group"};
constexpr Text DescriptionText{"Description", "Description"};
constexpr Text SelectAllText{"SelectAll", "Select All"};
constexpr Text HiddenText{"CamerasHidden", "The rights for cameras beyond %1 are kept."};
// Other pages have two of these keys for messages of their own.
constexpr Text NameEmptyText{"Edit", "Please Edit Username.", "EditUser"};
constexpr Text NameTakenText{"Change", "You Add The Same User Name. Please Change It!", "ChangeUser"};
constexpr Text NotConfirmedText{"Check", "Please Check Confirm Password Again."};

constexpr const char* g_apszGroups[] = {"Admin", "User"}; // by the number that is stored; not translated

QString GroupShown(const QString& sStored)
{
    const auto nGroup = static_cast<std::size_t>(CXmlObj::s_F_n_ToInt(sStored));
    return nGroup < std::size(g_apszGroups) ? QString::fromLatin1(g_apszGroups[nGroup]) : QString();
}

constexpr CEntryTable::stDef_Column g_astColumns[] = {
    {"UserName", NameText},
    {"Group", GroupText, GroupShown},
    {"Description", DescriptionText},
};
constexpr int NameColumn = 0;
constexpr int ColumnWidth = 300;
constexpr int AccountsIfMissing = 1; // every recorder has its administrator
constexpr int ShownCameras = 16;
constexpr int CamerasInRow = 8;

struct stDef_Capability
{
    int nPosition; ///< in `Capability`
    stDef_Text stText;
};
constexpr stDef_Capability g_astCapabilities[] = {{3, Text{"Record", "Record"}},
                                                  {6, Text{"Setting", "Setting"}},
                                                  {9, Text{"PTZ", "PTZ"}},
                                                  {10, Text{"TwoWayAudio", "Two Way Audio"}}};

/// The entry by the number behind it. A group that no entry has stays what it is until one is chosen.
struct AsGroup : nsForms::ByData
{
    static constexpr const char* ShownProperty = "shown";
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        objList.setProperty(ShownProperty, sValue);
        ByData::s_S_Show(objList, sValue);
    }
    static QString s_F_s_Stored(const QComboBox& objList)
    {
        return objList.currentIndex() < 0 ? objList.property(ShownProperty).toString() : ByData::s_F_s_Stored(objList);
    }
};

} // namespace

Page::CDlgSetupPageSystemSetting_User(CWndNvrEmbedded* pNvr) : CNvrPage(pNvr), vm_objRights(&pNvr->vm_xmlSystem) {}

// The Tab key goes through the controls as they are made.
void Page::m_S_Make(CForm& objForm)
{
    vm_pTable = new CEntryTable(objForm,
                                {.stParent = {&vm_pNvr->vm_xmlSystem, u"/root/account"_s},
                                 .pszStem = "USER",
                                 .stTitle = TitleText,
                                 .arColumns = g_astColumns,
                                 .nColumnWidth = ColumnWidth,
                                 .nCountIfMissing = AccountsIfMissing,
                                 .bNewRow = true},
                                this);
    auto* const pPage = new QVBoxLayout(this);
    pPage->addWidget(vm_pTable->m_F_p_List(), 1);
    vm_pTable->m_F_p_List()->setObjectName(u"Accounts"_s);
    auto* const pBelow = new QHBoxLayout;
    pPage->addLayout(pBelow);
    pBelow->addWidget(m_F_p_MakeForm(objForm), 1);
    auto* const pCameras = new QVBoxLayout;
    pBelow->addLayout(pCameras);
    pCameras->addWidget(m_F_p_MakeCameras(objForm, Text{"LiveView", "Live View"}, emDef_Rights::Preview, "PreviewCam"));
    pCameras->addWidget(
        m_F_p_MakeCameras(objForm, Text{"PlayBack", "Play Back"}, emDef_Rights::Playback, "PlaybackCam"));
    pPage->addLayout(m_F_p_MakeButtons(objForm));
    m_S_AddChecks();
    connect(vm_pTable, &CEntryTable::S_Shown, this, &Page::m_S_ShowChosen);
    connect(vm_pTable, &CEntryTable::S_Stored, this, &Page::m_S_StoreRights);
    connect(vm_pTable, &CEntryTable::S_Refused, this,
            [this](const stDef_Text& stReason) { m_S_Message(stReason, nsTexts::Error); });
}

QWidget* Page::m_F_p_MakeForm(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Setting", "Setting"}, {&vm_pNvr->vm_xmlSystem});
    grp.m_S_SetRows(&vm_pTable->m_F_o_Rows());
    vm_pGroup = new QComboBox;
    for (int nGroup = 0; const char* const pszGroup : g_apszGroups)
        vm_pGroup->addItem(QString::fromLatin1(pszGroup), nGroup++);
    grp.m_F_p_Row<AsGroup>(GroupText, "Group", vm_pGroup);
    vm_pName = grp.m_F_p_Edit(NameText, "UserName");
    vm_pPassword = grp.m_F_p_Password(nsTexts::Password, "Password");
    const Text ConfirmText{"ConfirmPassword", "Confirm Password"};
    vm_pConfirm = grp.m_F_p_Row<nsForms::Shown>(ConfirmText, "Password", new CPasswordEdit);
    vm_pConfirm->setObjectName(u"ConfirmPassword"_s);
    vm_pDescription = grp.m_F_p_Edit(DescriptionText, "Description");
    m_S_MakeCapabilities(grp);
    return grp.m_F_p_Box();
}

void Page::m_S_MakeCapabilities(CFormGroup& grp)
{
    constexpr int Columns = 2;
    vm_pCapabilities = new CCheckGrid(Columns);
    for (const stDef_Capability& st : g_astCapabilities) {
        QCheckBox* const pBox = vm_pCapabilities->m_F_p_Add(st.nPosition);
        pBox->setObjectName(QString::asprintf("Capability%d", st.nPosition));
        grp.m_F_o_Form().m_F_o_Texts().m_S_AddText(pBox, st.stText);
    }
    grp.m_S_AddWide(vm_pCapabilities, "Capability");
}

// Sixteen boxes with a number each are read out with what the number is for.
QWidget* Page::m_F_p_MakeCameras(CForm& objForm, const stDef_Text& stTitle, emDef_Rights nRights, const char* pszName)
{
    CFormGroup grp(objForm, stTitle);
    const std::string sAllName = std::string(pszName) + "All";
    const stDef_CameraRights stRights{nRights, grp.m_F_p_Check(SelectAllText, sAllName.c_str()),
                                      new CCheckGrid(CamerasInRow)};
    for (int nCamera = 0; nCamera < ShownCameras; ++nCamera) {
        QCheckBox* const pBox = stRights.pBoxes->m_F_p_Add(nCamera);
        pBox->setText(QString::asprintf("%02d", nCamera + 1));
        pBox->setObjectName(QString::fromLatin1(pszName) + QString::number(nCamera));
        objForm.m_F_o_Texts().m_S_Add(stTitle,
                                      [pBox](const QString& s) { pBox->setAccessibleName(s + u' ' + pBox->text()); });
    }
    objForm.m_F_o_Texts().m_S_Add(SelectAllText, [pAll = stRights.pAll, pBox = grp.m_F_p_Box()](const QString& s) {
        pAll->setAccessibleName(pBox->title() + u' ' + s);
    });
    grp.m_S_AddWide(stRights.pBoxes, pszName);
    connect(stRights.pAll, &QCheckBox::clicked, this,
            [this, stRights](bool bChecked) { m_S_CheckAll(stRights, bChecked); });
    vm_arCameras.append(stRights);
    return grp.m_F_p_Box();
}

QBoxLayout* Page::m_F_p_MakeButtons(CForm& objForm)
{
    auto* const pLine = new QHBoxLayout;
    const auto Make = [&](const stDef_Text& stText) {
        QPushButton* const pButton = objForm.m_F_p_Button(stText, QString::fromLatin1(stText.pszKey));
        pLine->addWidget(pButton);
        return pButton;
    };
    vm_pAdd = Make(Text{"Add", "Add"});
    QPushButton* const pModify = Make(Text{"Modify", "Modify"});
    vm_pDelete = Make(Text{"Delete", "Delete"});
    pLine->addStretch();
    vm_pTable->m_S_SetButtons(objForm, {.pAdd = vm_pAdd, .pDelete = vm_pDelete, .pModify = pModify});
    return pLine;
}

// The order differs between Add and Modify, and is fixed: for Modify an empty name is a duplicate, of the row for a new
// account.
void Page::m_S_AddChecks()
{
    using enum CEntryTable::emDef_Action;
    const auto IsEmpty = [this](int) { return vm_pName->text().isEmpty(); };
    const auto IsTaken = [this](int nOwnRow) {
        return vm_pTable->m_F_b_IsTaken(NameColumn, vm_pName->text(), nOwnRow);
    };
    const auto Differs = [this](int) { return vm_pPassword->text() != vm_pConfirm->text(); };
    vm_pTable->m_S_Refuse(Add, NameEmptyText, IsEmpty, vm_pName);
    vm_pTable->m_S_Refuse(Add, NameTakenText, IsTaken, vm_pName);
    vm_pTable->m_S_Refuse(Add, NotConfirmedText, Differs, vm_pConfirm);
    vm_pTable->m_S_Refuse(Modify, NameTakenText, IsTaken, vm_pName);
    vm_pTable->m_S_Refuse(Modify, NameEmptyText, IsEmpty, vm_pName);
    vm_pTable->m_S_Refuse(Modify, NotConfirmedText, Differs, vm_pConfirm);
}

void Page::m_S_Opened()
{
    vm_pTable->m_S_Open();
}

void Page::m_S_ShowChosen(const CEntryTable::stDef_Chosen& stChosen)
{
    if (stChosen.nRow == emDef_Row::None)
        vm_pGroup->setCurrentIndex(-1);
    const auto Shown = [&](emDef_Rights n) {
        return stChosen.nRow == emDef_Row::Entry ? vm_objRights.m_F_s_Of(stChosen.nEntry, n) : QString();
    };
    vm_pCapabilities->m_S_Show(Shown(emDef_Rights::Capability));
    for (const stDef_CameraRights& st : vm_arCameras) {
        st.pAll->setChecked(false);
        st.pBoxes->m_S_Show(Shown(st.nRights));
    }
    m_S_EnableFor(stChosen);
    const bool bHidden = std::ranges::any_of(
        vm_arCameras, [&](const stDef_CameraRights& st) { return Shown(st.nRights).size() > ShownCameras; });
    m_S_Tell(bHidden ? m_F_s_Line(HiddenText, QString::number(ShownCameras)) : QString());
}

// The administrator is built in: its rights are shown and can't be changed. A new account has the cameras that the
// administrator may view.
void Page::m_S_EnableFor(const CEntryTable::stDef_Chosen& stChosen)
{
    const bool bNew = stChosen.nRow == emDef_Row::New;
    const bool bEntry = stChosen.nRow == emDef_Row::Entry;
    const bool bFree = bNew || (bEntry && stChosen.nEntry != CUserRights::Administrator);
    for (QWidget* const pWidget : std::initializer_list<QWidget*>{vm_pGroup, vm_pName})
        pWidget->setEnabled(bFree);
    for (QLineEdit* const pEdit : {vm_pPassword, vm_pConfirm, vm_pDescription})
        pEdit->setEnabled(bNew || bEntry);
    vm_pCapabilities->m_S_EnableBelow(bFree ? std::numeric_limits<int>::max() : 0);
    for (const stDef_CameraRights& st : vm_arCameras) {
        const QString sMask = bNew ? vm_objRights.m_F_s_Of(CUserRights::Administrator, emDef_Rights::Preview)
                                   : vm_objRights.m_F_s_Of(stChosen.nEntry, st.nRights);
        st.pAll->setEnabled(bFree);
        st.pBoxes->m_S_EnableBelow(bFree ? static_cast<int>(sMask.size()) : 0);
    }
    CForm::s_S_EnableButton(vm_pAdd, bFree, vm_pTable->m_F_p_List());
    CForm::s_S_EnableButton(vm_pDelete, bFree && bEntry, vm_pTable->m_F_p_List());
}

void Page::m_S_CheckAll(const stDef_CameraRights& stRights, bool bChecked)
{
    const auto [nRow, nEntry] = vm_pTable->m_F_o_Chosen();
    const int nModel = nRow == emDef_Row::New ? CUserRights::Administrator : nEntry;
    if (bChecked)
        stRights.pBoxes->m_S_CheckBelow(static_cast<int>(vm_objRights.m_F_s_Of(nModel, stRights.nRights).size()));
    else
        stRights.pBoxes->m_S_Clear();
}

// A new account's masks are as long as those of the account before it.
void Page::m_S_StoreRights(int nAccount, bool bNew)
{
    const int nModel = bNew ? nAccount - 1 : nAccount;
    for (const stDef_CameraRights& st : vm_arCameras)
        vm_objRights.m_S_Write(nAccount, nModel, st.nRights, st.pBoxes->m_F_o_Marks());
    vm_objRights.m_S_Write(nAccount, nModel, emDef_Rights::Capability, vm_pCapabilities->m_F_o_Marks());
}
