#include "motion/CWndCameraMotion.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <algorithm>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CMnemonics.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CWaitCursor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text ViewText{"CameraView", "Camera View"};
constexpr Text ListText{"MotionID", "Motion ID"};
constexpr Text SettingText{"Setting", "Setting"};
constexpr Text NameText{"Name", "Name"};
constexpr Text SensitivityText{"Sensitivity", "Sensitivity"};
constexpr Text IncludedText{"Included", "Included"};
constexpr Text ExcludedText{"Excluded", "Excluded"};
constexpr Text PlaceText{"MotionPlace", "Left %1, top %2, width %3, height %4"};
constexpr Text NotSentText{"MotionNotSent", "Moved windows reach the recorder only by Update, one at a time."};
constexpr Text NoAnswerText{"MotionNoAnswer", "The recorder did not answer."};
constexpr Text WindowText{"MotionWindow", "Motion window %1"};

// Pixels at 96 dpi.
constexpr int CheckWidth = 21, NameWidth = 190;
constexpr int ViewWidth = 320, ViewHeight = 240; // of the canvas, until the recorder tells its size

constexpr int StreamTimeoutMs = 10000;
constexpr int CloseThreadMs = 1000;
constexpr int MostWindows = 10000; // rows, whatever a damaged reply counts
constexpr int MostPixels = 4096;   // of a side of the canvas

// In the order in which an update names them.
constexpr std::pair<const char*, int stDef_Rect::*> g_aSides[] = {{"Left", &stDef_Rect::left},
                                                                  {"Top", &stDef_Rect::top},
                                                                  {"Right", &stDef_Rect::right},
                                                                  {"Bottom", &stDef_Rect::bottom}};

} // namespace

CWndCameraMotion::CWndCameraMotion(const stDef_MotionBrand& stBrand, CCamObj_Base* pCamObj, QWidget* pParent)
    : QWidget(pParent), vm_stBrand(stBrand), vm_pCamObj(pCamObj), vm_pNvr(pCamObj->m_pNvr)
{
    setLayout(new QGridLayout);
    layout()->setContentsMargins(0, 0, 0, 0);
}

CWndCameraMotion::~CWndCameraMotion()
{
    m_S_Release();
}

// --- the controls

void CWndCameraMotion::m_S_Open()
{
    const CWaitCursor objWait;
    vm_nSelect = -1;
    m_S_Release();
    show();
    m_S_MakeControls();
    if (!m_F_b_Exchange({}, emDef_Checks::AnyToken))
        return;
    m_S_StartReader();
    m_S_SelectRow(0);
    m_S_ShowRanges();
    CMnemonics::s_S_Assign(this);
}

void CWndCameraMotion::m_S_Release()
{
    m_S_StopReader();
    delete vm_pContent;
    vm_pContent = nullptr;
    vm_pSetMotion = nullptr;
    vm_objForm.reset();
}

void CWndCameraMotion::m_S_MakeControls()
{
    vm_pContent = new QWidget;
    vm_objForm.emplace(vm_pContent);
    auto* const pGrid = new QGridLayout(vm_pContent);
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->addWidget(m_F_p_MakeView(), 0, 0);
    pGrid->addWidget(m_F_p_MakeList(), 0, 1);
    pGrid->addWidget(m_F_p_MakeFields(), 1, 0, 1, 2);
    pGrid->setColumnStretch(0, 3);
    pGrid->setColumnStretch(1, 2);
    pGrid->setRowStretch(0, 1);
    layout()->addWidget(vm_pContent);
    vm_objForm->m_S_Finish(*vm_pNvr);
    vm_pContent->show();
}

// A canvas may be larger than its place: then it scrolls, since its pixels are the recorder's units and can't shrink.
QWidget* CWndCameraMotion::m_F_p_MakeView()
{
    CFormGroup grp(*vm_objForm, ViewText);
    vm_pSetMotion = new CSetMotionObj;
    vm_pSetMotion->setObjectName(u"Canvas"_s);
    vm_pSetMotion->setFixedSize(ViewWidth, ViewHeight);
    auto* const pArea = new QScrollArea;
    pArea->setFrameShape(QFrame::NoFrame);
    pArea->setFocusPolicy(Qt::NoFocus);
    pArea->setWidget(vm_pSetMotion);
    pArea->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    pArea->setMinimumSize(ViewWidth, ViewHeight);
    grp.m_S_AddWide(pArea, "View");
    connect(vm_pSetMotion, &CSetMotionObj::S_Selected, this, &CWndCameraMotion::m_S_SelectRow);
    connect(vm_pSetMotion, &CSetMotionObj::S_Placed, this, &CWndCameraMotion::m_S_OnPlaced);
    return grp.m_F_p_Box();
}

QWidget* CWndCameraMotion::m_F_p_MakeList()
{
    CFormGroup grp(*vm_objForm, ListText);
    vm_pList = new CItemList;
    vm_pList->m_S_SetColumns({CheckWidth, NameWidth});
    vm_pList->m_S_SetColumnText(0, u"ID"_s); // these two are not translated
    vm_pList->m_S_SetColumnText(1, u"Name"_s);
    vm_objForm->m_F_o_Texts().m_S_Add(ListText, [this](const QString& s) { vm_pList->setAccessibleName(s); });
    vm_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // a long name has its tip
    grp.m_S_AddWide(vm_pList, "Windows");
    const QList<QPushButton*> arButtons =
        grp.m_F_ar_Buttons({{Text{"Add", "Add"}, "Add"}, {Text{"Delete", "Delete"}, "Delete"}});
    vm_pAdd = arButtons[0];
    vm_pDelete = arButtons[1];
    connect(vm_pAdd, &QPushButton::clicked, this, &CWndCameraMotion::m_S_OnAdd);
    connect(vm_pDelete, &QPushButton::clicked, this, &CWndCameraMotion::m_S_OnDelete);
    connect(vm_pList, &CItemList::S_Selected, this, &CWndCameraMotion::m_S_OnSelectRow);
    connect(vm_pList, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* pItem) {
        if (pItem->column() == 0)
            m_S_OnChecked(pItem->row(), pItem->checkState() == Qt::Checked);
    });
    return grp.m_F_p_Box();
}

QWidget* CWndCameraMotion::m_F_p_MakeFields()
{
    CFormGroup grp(*vm_objForm, SettingText);
    vm_pName = grp.m_F_p_Edit(NameText, "Name");
    vm_pName->setReadOnly(!vm_stBrand.bNameEditable);
    if (vm_stBrand.bWindowType)
        m_S_MakeTypes(grp);
    vm_pFirst = grp.m_F_p_Edit(vm_stBrand.stFirst, "ObjectSize");
    vm_pSecond = grp.m_F_p_Edit(SensitivityText, "Sensitivity");
    vm_pUpdate = grp.m_F_p_Button(Text{"Update", "Update"}, "Update");
    connect(vm_pUpdate, &QPushButton::clicked, this, &CWndCameraMotion::m_S_OnUpdate);
    vm_pPlace = new QLabel;
    vm_pNote = new QLabel;
    grp.m_S_AddWide(vm_pPlace, "Place");
    grp.m_S_AddWide(vm_pNote, "MotionNote");
    vm_pNote->setWordWrap(true);
    return grp.m_F_p_Box();
}

void CWndCameraMotion::m_S_MakeTypes(CFormGroup& grp)
{
    auto* const pLine = new QWidget;
    auto* const pLayout = new QHBoxLayout(pLine);
    pLayout->setContentsMargins(0, 0, 0, 0);
    vm_pIncluded = new QRadioButton;
    vm_pExcluded = new QRadioButton;
    for (const auto& [pRadio, stText] : {std::pair{vm_pIncluded, IncludedText}, {vm_pExcluded, ExcludedText}}) {
        pRadio->setObjectName(QString::fromLatin1(stText.pszKey));
        vm_objForm->m_F_o_Texts().m_S_AddText(pRadio, stText);
        pLayout->addWidget(pRadio);
    }
    pLayout->addStretch();
    grp.m_S_AddWide(pLine, "WindowType");
    connect(vm_pIncluded, &QRadioButton::clicked, this, [this] { m_S_OnWindowType(true); });
    connect(vm_pExcluded, &QRadioButton::clicked, this, [this] { m_S_OnWindowType(false); });
}

void CWndCameraMotion::m_S_ShowRanges()
{
    const struct
    {
        QLineEdit* pEdit;
        Text stLabel;
        const char *pszMin, *pszMax;
    } arRows[] = {{vm_pFirst, vm_stBrand.stFirst, "ObjectSizeMin", "ObjectSizeMax"},
                  {vm_pSecond, SensitivityText, "SensitivityMin", "SensitivityMax"}};
    for (const auto& row : arRows) {
        const auto Limit = [this](const char* pszKey) {
            return vm_xmlMotion.m_F_s_Value(m_F_s_CameraPath(), QString::fromLatin1(pszKey));
        };
        QLabel* const pLabel = CForm::s_F_p_LabelOf(row.pEdit);
        QString sLimits = u" ("_s + Limit(row.pszMin) + u" ~ "_s + Limit(row.pszMax) + u") : "_s;
        pLabel->setTextFormat(Qt::PlainText); // what the recorder says is no markup
        pLabel->setText(m_F_s_Line(row.stLabel) + sLimits.replace(u'&', u"&&"_s));
    }
}

// --- the stream

// While the window is open, the connection's stored target is the reader's.
void CWndCameraMotion::m_S_StartReader()
{
    vm_bHadTarget = vm_pNvr->m_F_b_HasTarget();
    vm_pNvr->m_S_InitHTTP();
    const QString sUrl = u"cgi-bin/motiondata.cgi?camera=%1"_s.arg(vm_pCamObj->m_nCamIndex);
    vm_pReader = std::make_shared<CMotionReader>(
        vm_pSetMotion->m_F_p_Lights(), [pNvr = vm_pNvr.data(), sUrl](CMemManage& memPart) {
            return pNvr->m_F_n_MultiPartStreamGet(sUrl, &memPart, StreamTimeoutMs);
        });
    // The thread has a share of its own, for it may be let go.
    auto* const pShare = new std::shared_ptr<CMotionReader>(vm_pReader);
    if (vm_threadMotion.m_F_n_CreaetThread(s_F_n_MotionThread, pShare) == 0)
        delete pShare;
}

// A read that waits ends with the target, so that the thread needs none of its second.
void CWndCameraMotion::m_S_StopReader()
{
    if (!vm_pReader)
        return;
    vm_pReader->m_S_Stop();
    vm_pNvr->m_S_ReleaseHTTP();
    vm_threadMotion.m_F_n_CloseThread(CloseThreadMs);
    vm_pReader.reset();
    if (vm_bHadTarget)
        vm_pNvr->m_S_InitHTTP();
}

unsigned int CWndCameraMotion::s_F_n_MotionThread(void* pReader)
{
    const std::unique_ptr<std::shared_ptr<CMotionReader>> pShare(static_cast<std::shared_ptr<CMotionReader>*>(pReader));
    (*pShare)->m_S_Run();
    return 0;
}

// --- the recorder

QString CWndCameraMotion::m_F_s_CameraPath() const
{
    return QString::asprintf("/root/Cam%03d", vm_pCamObj->m_nCamIndex);
}

QString CWndCameraMotion::m_F_s_WindowPath(int nPosition) const
{
    return m_F_s_CameraPath() + QString::asprintf("/MotionData%03d", nPosition);
}

int CWndCameraMotion::m_F_n_Number(const char* pszKey) const
{
    return vm_xmlMotion.m_F_n_GetValueInt(m_F_s_CameraPath(), QString::fromLatin1(pszKey), 0);
}

stDef_Rect CWndCameraMotion::m_F_o_Stored(int nPosition) const
{
    stDef_Rect st;
    for (const auto& [pszKey, pSide] : g_aSides)
        st.*pSide = vm_xmlMotion.m_F_n_GetValueInt(m_F_s_WindowPath(nPosition), QString::fromLatin1(pszKey), 0);
    return st;
}

QString CWndCameraMotion::m_F_s_Url(const QString& sQuery) const
{
    return u"cgi-bin/config.cgi?"_s + sQuery + u"&camera=%1"_s.arg(vm_pCamObj->m_nCamIndex);
}

// Nothing but blanks is escaped: that is the recorders' way with names.
QString CWndCameraMotion::m_F_s_UpdateUrl(int nIndex) const
{
    const CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(vm_nSelect);
    const stDef_Rect st = pWnd ? pWnd->m_F_o_Rect() : m_F_o_Stored(vm_nSelect);
    const QString sType = !vm_pIncluded ? QString() : vm_pIncluded->isChecked() ? u"include"_s : u"exclude"_s;
    QString sQuery = u"action=update"_s;
    const auto Append = [&](const char* pszKey, const QString& sValue) {
        sQuery += u"&Motion.M"_s + QString::number(nIndex) + u'.' + QString::fromLatin1(pszKey) + u'=' + sValue;
    };
    for (const auto& [pszKey, pSide] : g_aSides)
        Append(pszKey, QString::number(st.*pSide));
    Append("Name", vm_pName->text());
    Append("Sensitivity", vm_pSecond->text());
    Append("ObjectSize", vm_pFirst->text());
    Append("WindowType", sType);
    return m_F_s_Url(sQuery).replace(u' ', u"%20"_s);
}

// Whatever came of the request, the list shows the result as it stands. The window may be closed while the recorder is
// asked; nothing of it is touched then.
bool CWndCameraMotion::m_F_b_Exchange(const QString& sUrl, emDef_Checks nChecks)
{
    const QPointer<CWndCameraMotion> pSelf(this);
    CXmlObj xmlReply;
    bool bAnswered = true;
    {
        CPageRequests objRequests(vm_pNvr, this, nsTexts::AskingCamera);
        if (!sUrl.isEmpty()) {
            bAnswered = objRequests.m_F_b_Get(sUrl, &xmlReply, vm_stBrand.nTimeoutMs);
            if (!pSelf)
                return false;
            if (sUrl.contains("action=update"_L1))
                m_F_b_SaveMotionSetting();
        }
        const QString sList = m_F_s_Url(u"action=list&group=motion"_s);
        if (!objRequests.m_F_b_Get(sList, &xmlReply, vm_stBrand.nTimeoutMs)) {
            xmlReply.m_F_b_Close();
            bAnswered = false;
        }
    }
    if (!pSelf)
        return false;
    vm_xmlMotion = std::move(xmlReply);
    m_S_Load(nChecks);
    if (!bAnswered)
        m_S_Tell(NoAnswerText);
    return true;
}

void CWndCameraMotion::m_S_Load(emDef_Checks nChecks)
{
    vm_pNote->clear();
    vm_pSetMotion->m_S_ResetWnds(vm_pCamObj->m_nCamIndex, m_F_n_Number("MaxMotionWnd"));
    const int nWindows = std::min(m_F_n_Number("MotionDataCount"), MostWindows);
    for (int i = 0; i < nWindows; ++i)
        vm_pSetMotion->m_F_b_Open(i, m_F_o_Stored(i)); // a surplus has a row and no window
    m_S_PlaceCanvas();
    m_S_FillList();
    m_S_Check(nChecks);
    if (nChecks == emDef_Checks::AnyToken)
        vm_pAdd->setEnabled(m_F_n_Number("MaxMotionWnd") > m_F_n_Number("MotionDataCount"));
}

void CWndCameraMotion::m_S_PlaceCanvas()
{
    const int nWidth = m_F_n_Number("MotionWndW"), nHeight = m_F_n_Number("MotionWndH");
    const bool bShown = nWidth >= 1 && nHeight >= 1 && m_F_n_Number("MaxMotionWnd") >= 1;
    if (bShown)
        vm_pSetMotion->setFixedSize(std::min(nWidth, MostPixels), std::min(nHeight, MostPixels));
    vm_pSetMotion->setVisible(bShown);
}

void CWndCameraMotion::m_S_FillList()
{
    const QSignalBlocker objQuiet(vm_pList);
    vm_pList->m_S_Clear();
    const int nWindows = std::min(m_F_n_Number("MotionDataCount"), MostWindows);
    for (int i = 0; i < nWindows; ++i) {
        const QString sPath = m_F_s_WindowPath(i);
        vm_pList->m_S_Insert(i, {{}, vm_xmlMotion.m_F_s_Value(sPath, u"Name"_s)},
                             vm_xmlMotion.m_F_n_GetValueInt(sPath, u"Index"_s, 0));
        vm_pList->item(i, 0)->setCheckState(Qt::Unchecked);
        m_S_NameWindow(i);
    }
}

void CWndCameraMotion::m_S_Check(emDef_Checks nChecks)
{
    const QSignalBlocker objQuiet(vm_pList);
    const CXmlObj& xmlCamera = static_cast<const CWndNvrShared*>(vm_pNvr.data())->vm_xmlCamera;
    QStringList arTokens =
        xmlCamera.m_F_s_Value(vm_pCamObj->m_F_s_NodePath(), u"MotionSetting"_s).split(u':', Qt::SkipEmptyParts);
    for (int i = 0; i < vm_pList->rowCount(); ++i) {
        const auto Names = [nIndex = vm_pList->m_F_n_Data(i)](const QString& sToken) {
            return CXmlObj::s_F_n_ToInt(sToken) == nIndex;
        };
        const bool bInOrder = nChecks == emDef_Checks::InOrder;
        const bool bChecked = bInOrder ? !arTokens.isEmpty() && Names(arTokens.first())
                                       : std::any_of(arTokens.begin(), arTokens.end(), Names);
        if (bChecked && bInOrder)
            arTokens.removeFirst();
        vm_pList->item(i, 0)->setCheckState(bChecked ? Qt::Checked : Qt::Unchecked);
        if (CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(i))
            pWnd->vm_bChecked = bChecked;
    }
}

QString CWndCameraMotion::m_F_s_MotionSetting() const
{
    QStringList arTokens;
    for (int i = 0; i < vm_pList->rowCount(); ++i) {
        if (vm_pList->item(i, 0)->checkState() == Qt::Checked)
            arTokens.append(QString::number(vm_pList->m_F_n_Data(i)));
    }
    return arTokens.join(u':');
}

bool CWndCameraMotion::m_F_b_SaveMotionSetting()
{
    if (vm_pContent && vm_xmlMotion.m_F_b_IsOpen())
        static_cast<CWndNvrShared*>(vm_pNvr.data())
            ->vm_xmlCamera.m_F_b_SetValue(vm_pCamObj->m_F_s_NodePath(), u"MotionSetting"_s, m_F_s_MotionSetting());
    return true;
}

// --- what the operator does

void CWndCameraMotion::m_S_OnAdd()
{
    if (!m_F_b_Exchange(m_F_s_Url(u"action=add&group=Motion&template=motion"_s), emDef_Checks::AnyToken))
        return;
    if (vm_stBrand.bEnablesAfterAdd) { // the row that is selected next decides all the same
        vm_pDelete->setEnabled(true);
        vm_pUpdate->setEnabled(true);
    }
    m_S_SelectRow(0);
}

void CWndCameraMotion::m_S_OnDelete()
{
    const int nIndex = vm_pList->m_F_n_Data(vm_nSelect);
    if (m_F_b_Exchange(m_F_s_Url(u"action=remove&group=Motion.M%1"_s.arg(nIndex)), emDef_Checks::AnyToken))
        m_S_SelectRow(0);
}

void CWndCameraMotion::m_S_OnUpdate()
{
    const int nRow = vm_nSelect;
    if (m_F_b_Exchange(m_F_s_UpdateUrl(vm_pList->m_F_n_Data(nRow)), emDef_Checks::InOrder))
        m_S_SelectRow(nRow);
}

void CWndCameraMotion::m_S_OnWindowType(bool bIncluded)
{
    vm_pIncluded->setChecked(bIncluded);
    vm_pExcluded->setChecked(!bIncluded);
    vm_pFirst->setEnabled(bIncluded);
    vm_pSecond->setEnabled(bIncluded);
}

void CWndCameraMotion::m_S_SelectRow(int nRow)
{
    const QSignalBlocker objQuiet(vm_pList);
    vm_pList->m_S_Select(nRow);
    m_S_OnSelectRow();
}

void CWndCameraMotion::m_S_OnChecked(int nRow, bool bChecked)
{
    if (CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(nRow))
        pWnd->vm_bChecked = bChecked;
    m_S_SelectRow(nRow);
}

void CWndCameraMotion::m_S_OnSelectRow()
{
    if (CMotionWnd* const pBefore = vm_pSetMotion->m_F_p_Wnd(vm_nSelect))
        pBefore->vm_bSelected = false;
    vm_nSelect = vm_pList->m_F_n_Selected();
    if (vm_nSelect >= 0)
        m_S_ShowRow(vm_nSelect);
    else
        m_S_ShowNoRow();
    vm_pDelete->setEnabled(vm_nSelect >= 0);
    vm_pUpdate->setEnabled(vm_nSelect >= 0);
    m_S_ShowPlace();
}

void CWndCameraMotion::m_S_ShowRow(int nRow)
{
    const auto Value = [&](const char* pszKey) {
        return vm_xmlMotion.m_F_s_Value(m_F_s_WindowPath(nRow), QString::fromLatin1(pszKey));
    };
    vm_pName->setText(Value("Name"));
    vm_pFirst->setText(Value("ObjectSize"));
    vm_pSecond->setText(Value("Sensitivity"));
    if (vm_pIncluded)
        m_S_OnWindowType(Value("WindowType") == "include"_L1);
    if (CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(nRow))
        pWnd->vm_bSelected = true;
}

void CWndCameraMotion::m_S_ShowNoRow()
{
    for (QLineEdit* const pEdit : {vm_pName, vm_pFirst, vm_pSecond})
        pEdit->clear();
    if (vm_pIncluded)
        m_S_OnWindowType(true);
}

void CWndCameraMotion::m_S_OnPlaced()
{
    m_S_ShowPlace();
    m_S_Tell(NotSentText);
}

void CWndCameraMotion::m_S_ShowPlace()
{
    const CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(vm_nSelect);
    if (!pWnd)
        return vm_pPlace->clear();
    const stDef_Rect st = pWnd->m_F_o_Rect();
    vm_pPlace->setText(m_F_s_Line(PlaceText).arg(st.left).arg(st.top).arg(st.m_F_n_Width()).arg(st.m_F_n_Height()));
    m_S_NameWindow(vm_nSelect);
}

void CWndCameraMotion::m_S_Tell(const stDef_Text& stText)
{
    vm_pNote->setText(m_F_s_Line(stText));
}

// A reader tells which window it is, and where.
void CWndCameraMotion::m_S_NameWindow(int nPosition) const
{
    CMotionWnd* const pWnd = vm_pSetMotion->m_F_p_Wnd(nPosition);
    if (!pWnd)
        return;
    const stDef_Rect st = pWnd->m_F_o_Rect();
    pWnd->setAccessibleName(m_F_s_Line(WindowText).arg(vm_pList->item(nPosition, 1)->text()));
    pWnd->setAccessibleDescription(
        m_F_s_Line(PlaceText).arg(st.left).arg(st.top).arg(st.m_F_n_Width()).arg(st.m_F_n_Height()));
}

QString CWndCameraMotion::m_F_s_Line(const stDef_Text& stText) const
{
    return vm_pNvr->m_F_s_Text(stText, QString::fromUtf8(stText.pszDefault));
}
