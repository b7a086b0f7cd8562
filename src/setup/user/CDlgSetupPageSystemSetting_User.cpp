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

namespace {

constexpr Text NameText{"Account", "User Name", "AccountUser"};
constexpr Text GroupText{"Group", "Group"};
constexpr Text DescriptionText{"Description", "Description"};
constexpr Text SelectAllText{"SelectAll", "Select All"};
constexpr Text HiddenText{"CamerasHidden", "The rights for cameras beyond %1 are kept."};
constexpr Text ColumnTexts[] = {NameText, GroupText, DescriptionText};
constexpr int NameColumn = 0;
constexpr int ColumnWidth = 300;
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

/// By the fault. Other pages have two of these keys for messages of their own.
constexpr stDef_Text g_astFaults[] = {
    Text{"Edit", "Please Edit Username.", "EditUser"},
    Text{"Change", "You Add The Same User Name. Please Change It!", "ChangeUser"},
    Text{"Check", "Please Check Confirm Password Again."},
};

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

Page::CDlgSetupPageSystemSetting_User(CWndNvrEmbedded* pNvr) : CNvrPage(pNvr), vm_objAccounts(&pNvr->vm_xmlSystem) {}

// The Tab key goes through the controls as they are made.
void Page::m_S_Make(CForm& objForm)
{
    auto* const pPage = new QVBoxLayout(this);
    pPage->addWidget(m_F_p_MakeList(objForm), 1);
    auto* const pBelow = new QHBoxLayout;
    pPage->addLayout(pBelow);
    pBelow->addWidget(m_F_p_MakeForm(objForm), 1);
    auto* const pCameras = new QVBoxLayout;
    pBelow->addLayout(pCameras);
    pCameras->addWidget(m_F_p_MakeCameras(objForm, Text{"LiveView", "Live View"}, emDef_Rights::Preview, "PreviewCam"));
    pCameras->addWidget(
        m_F_p_MakeCameras(objForm, Text{"PlayBack", "Play Back"}, emDef_Rights::Playback, "PlaybackCam"));
    pPage->addLayout(m_F_p_MakeButtons(objForm));
}

QWidget* Page::m_F_p_MakeList(CForm& objForm)
{
    CTextTable& objTexts = objForm.m_F_o_Texts();
    vm_pList = new CItemList(this);
    vm_pList->setObjectName(u"Accounts"_s);
    vm_pList->m_S_SetColumns(QList<int>(std::ssize(ColumnTexts), ColumnWidth));
    objTexts.m_S_Add(Text{"User", "User"}, [this](const QString& s) { vm_pList->setAccessibleName(s); });
    for (int nColumn = 0; const stDef_Text& stText : ColumnTexts) {
        objTexts.m_S_Add(stText, [this, nColumn](const QString& s) { vm_pList->m_S_SetColumnText(nColumn, s); });
        ++nColumn;
    }
    connect(vm_pList, &CItemList::S_Selected, this, &Page::m_S_ShowRow);
    return vm_pList;
}

QWidget* Page::m_F_p_MakeForm(CForm& objForm)
{
    const stDef_Node stAccount{&vm_pNvr->vm_xmlSystem};
    CFormGroup grp(objForm, Text{"Setting", "Setting"}, stAccount);
    grp.m_S_SetRows(&vm_objRows);
    vm_pGroup = new QComboBox;
    vm_pGroup->addItem(u"Admin"_s, 0); // not translated
    vm_pGroup->addItem(u"User"_s, 1);
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
    const auto Make = [&](const stDef_Text& stText, void (Page::*fnAct)()) {
        QPushButton* const pButton = objForm.m_F_p_Button(stText, QString::fromLatin1(stText.pszKey));
        connect(pButton, &QPushButton::clicked, this, fnAct);
        pLine->addWidget(pButton);
        return pButton;
    };
    vm_pAdd = Make(Text{"Add", "Add"}, &Page::m_S_Add);
    vm_pModify = Make(Text{"Modify", "Modify"}, &Page::m_S_Modify);
    vm_pDelete = Make(Text{"Delete", "Delete"}, &Page::m_S_Delete);
    pLine->addStretch();
    objForm.m_S_SetEnterButtons({vm_pModify, vm_pAdd});
    return pLine;
}

void Page::m_S_Opened()
{
    m_S_Fill();
    vm_pList->m_S_Select(0);
}

void Page::m_S_Fill()
{
    if (!vm_objAccounts.m_F_b_IsOpen())
        return;
    vm_pList->m_S_Clear();
    const int nCount = vm_objAccounts.m_F_n_Count();
    for (int nAccount = 0; nAccount < nCount; ++nAccount)
        vm_pList->m_S_Insert(nAccount, m_F_ar_RowTexts(nAccount), nAccount);
    vm_pList->m_S_Insert(nCount, {}, nCount);
}

QStringList Page::m_F_ar_RowTexts(int nAccount) const
{
    const int nGroup = CXmlObj::s_F_n_ToInt(vm_objAccounts.m_F_s_Value(nAccount, "Group"));
    return {vm_objAccounts.m_F_s_Value(nAccount, "UserName"), vm_pGroup->itemText(vm_pGroup->findData(nGroup)),
            vm_objAccounts.m_F_s_Value(nAccount, "Description")};
}

int Page::m_F_n_Chosen() const
{
    return vm_pList->m_F_n_Data(vm_pList->m_F_n_Selected());
}

// The row for a new account is the last one, by its number: an account may be without a name, too.
Page::emDef_RowKind Page::m_F_n_KindOf(int nRow) const
{
    if (nRow < 0 || !vm_objAccounts.m_F_b_IsOpen())
        return emDef_RowKind::None;
    const int nAccount = vm_pList->m_F_n_Data(nRow);
    if (m_F_b_IsNew(nAccount))
        return emDef_RowKind::New;
    return nAccount == CUserAccounts::Administrator ? emDef_RowKind::Administrator : emDef_RowKind::Account;
}

void Page::m_S_ShowRow(int nRow)
{
    const emDef_RowKind nKind = m_F_n_KindOf(nRow);
    const int nAccount = vm_pList->m_F_n_Data(nRow);
    m_S_ShowValues(nKind, nAccount);
    m_S_EnableFor(nKind, nAccount);
    m_S_TellHidden(nAccount);
}

void Page::m_S_ShowValues(emDef_RowKind nKind, int nAccount)
{
    const bool bStored = nKind == emDef_RowKind::Account || nKind == emDef_RowKind::Administrator;
    if (bStored) {
        vm_objRows.m_S_Load(vm_objAccounts.m_F_s_Path(nAccount));
    } else { // not by the rows: a stray node behind the accounts would show
        vm_pGroup->setCurrentIndex(nKind == emDef_RowKind::New ? 0 : -1);
        for (QLineEdit* const pEdit : {vm_pName, vm_pPassword, vm_pConfirm, vm_pDescription})
            pEdit->clear();
    }
    const auto Shown = [&](emDef_Rights n) { return bStored ? vm_objAccounts.m_F_s_Rights(nAccount, n) : QString(); };
    vm_pCapabilities->m_S_Show(Shown(emDef_Rights::Capability));
    for (const stDef_CameraRights& st : vm_arCameras) {
        st.pAll->setChecked(false);
        st.pBoxes->m_S_Show(Shown(st.nRights));
    }
}

// The administrator's rights are shown and can't be changed. A new account has the cameras that the administrator has.
void Page::m_S_EnableFor(emDef_RowKind nKind, int nAccount)
{
    const bool bAccount = nKind == emDef_RowKind::Account;
    const bool bFree = bAccount || nKind == emDef_RowKind::New;
    const auto LengthOf = [&](emDef_Rights nRights) {
        if (!bFree)
            return 0;
        const QString sMask = bAccount
                                  ? vm_objAccounts.m_F_s_Rights(nAccount, nRights)
                                  : vm_objAccounts.m_F_s_Rights(CUserAccounts::Administrator, emDef_Rights::Preview);
        return static_cast<int>(sMask.size());
    };
    for (QWidget* const pWidget : {static_cast<QWidget*>(vm_pGroup), static_cast<QWidget*>(vm_pName)})
        pWidget->setEnabled(bFree);
    for (QLineEdit* const pEdit : {vm_pPassword, vm_pConfirm, vm_pDescription})
        pEdit->setEnabled(nKind != emDef_RowKind::None);
    vm_pCapabilities->m_S_EnableBelow(bFree ? std::numeric_limits<int>::max() : 0);
    for (const stDef_CameraRights& st : vm_arCameras) {
        st.pAll->setEnabled(bFree);
        st.pBoxes->m_S_EnableBelow(LengthOf(st.nRights));
    }
    CForm::s_S_EnableButton(vm_pAdd, bFree, vm_pList);
    CForm::s_S_EnableButton(vm_pModify, bAccount || nKind == emDef_RowKind::Administrator, vm_pList);
    CForm::s_S_EnableButton(vm_pDelete, bAccount, vm_pList);
}

void Page::m_S_TellHidden(int nAccount)
{
    const bool bHidden = std::ranges::any_of(vm_arCameras, [&](const stDef_CameraRights& st) {
        return vm_objAccounts.m_F_s_Rights(nAccount, st.nRights).size() > ShownCameras;
    });
    m_S_Tell(bHidden ? m_F_s_Line(HiddenText, QString::number(ShownCameras)) : QString());
}

void Page::m_S_CheckAll(const stDef_CameraRights& stRights, bool bChecked)
{
    const int nChosen = m_F_n_Chosen();
    const int nModel = m_F_b_IsNew(nChosen) ? CUserAccounts::Administrator : nChosen;
    if (bChecked)
        stRights.pBoxes->m_S_CheckBelow(static_cast<int>(vm_objAccounts.m_F_s_Rights(nModel, stRights.nRights).size()));
    else
        stRights.pBoxes->m_S_Clear();
}

bool Page::m_F_b_Has(emDef_Fault nFault, int nOwnRow) const
{
    switch (nFault) {
    case emDef_Fault::NameEmpty:
        return vm_pName->text().isEmpty();
    case emDef_Fault::NameTaken:
        for (int nRow = 0; nRow < vm_pList->rowCount(); ++nRow) {
            if (nRow != nOwnRow && vm_pList->item(nRow, NameColumn)->text() == vm_pName->text())
                return true;
        }
        return false;
    case emDef_Fault::NotConfirmed:
        return vm_pPassword->text() != vm_pConfirm->text();
    }
    return false;
}

bool Page::m_F_b_Refused(std::initializer_list<emDef_Fault> arFaults, int nOwnRow)
{
    const auto* const it =
        std::ranges::find_if(arFaults, [&](emDef_Fault nFault) { return m_F_b_Has(nFault, nOwnRow); });
    if (it == arFaults.end())
        return false;
    m_S_TellFault(*it);
    return true;
}

// The row stays selected and what was typed stays in the form; the field at fault gets the focus.
void Page::m_S_TellFault(emDef_Fault nFault)
{
    m_S_Message(g_astFaults[static_cast<std::size_t>(nFault)], nsTexts::Error);
    QLineEdit* const pField = nFault == emDef_Fault::NotConfirmed ? vm_pConfirm : vm_pName;
    pField->setFocus();
    pField->selectAll();
}

CUserAccounts::Rights Page::m_F_ar_Marks() const
{
    CUserAccounts::Rights arMarks;
    for (const stDef_CameraRights& st : vm_arCameras)
        arMarks[static_cast<std::size_t>(st.nRights)] = st.pBoxes->m_F_o_Marks();
    arMarks[static_cast<std::size_t>(emDef_Rights::Capability)] = vm_pCapabilities->m_F_o_Marks();
    return arMarks;
}

// The order of the checks differs between Add and Modify, and is fixed: for Modify an empty name is a duplicate, of the
// row for a new account.
void Page::m_S_Add()
{
    using enum emDef_Fault;
    if (!vm_objAccounts.m_F_b_IsOpen())
        return vm_pList->m_S_Select(vm_pList->m_F_n_Selected());
    if (m_F_b_Refused({NameEmpty, NameTaken, NotConfirmed}, -1))
        return;
    const int nAccount = vm_objAccounts.m_F_n_Count();
    vm_objRows.m_F_b_Store(vm_objAccounts.m_F_s_Path(nAccount));
    vm_objAccounts.m_S_Append(m_F_ar_Marks());
    vm_pList->m_S_SetTexts(nAccount, m_F_ar_RowTexts(nAccount));
    vm_pList->m_S_Insert(nAccount + 1, {}, nAccount + 1);
    vm_pList->m_S_Select(nAccount);
}

void Page::m_S_Modify()
{
    using enum emDef_Fault;
    const int nRow = vm_pList->m_F_n_Selected();
    if (vm_objAccounts.m_F_b_IsOpen()) {
        if (m_F_b_Refused({NameTaken, NameEmpty, NotConfirmed}, nRow))
            return;
        const int nAccount = m_F_n_Chosen();
        vm_objRows.m_F_b_Store(vm_objAccounts.m_F_s_Path(nAccount));
        vm_objAccounts.m_S_SetRights(nAccount, m_F_ar_Marks());
        vm_pList->m_S_SetTexts(nRow, m_F_ar_RowTexts(nAccount));
    }
    vm_pList->m_S_Select(nRow);
}

void Page::m_S_Delete()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (!vm_objAccounts.m_F_b_IsOpen())
        return vm_pList->m_S_Select(nRow);
    vm_objAccounts.m_S_Remove(m_F_n_Chosen());
    m_S_Fill();
    vm_pList->m_S_Select(std::max(nRow - 1, 0));
}
