#include "recorders/CRecorderDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "fleetlink/fleetlink.h"
#include "live/CLiveState.h"
#include "window/CDialogButtons.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

void Tint(QLabel& objLabel, emDef_LiveState nState)
{
    QPalette objPalette = objLabel.parentWidget()->palette();
    objPalette.setColor(QPalette::WindowText, CLiveState::s_F_o_Colour(nState, objPalette));
    objLabel.setPalette(objPalette);
}

// How the values of a form stand in their controls.

void Show(QLineEdit& objEdit, const QString& sValue)
{
    objEdit.setText(sValue);
}
QString ValueOf(const QLineEdit& objEdit)
{
    return objEdit.text();
}

void Show(QComboBox& objList, int nPosition)
{
    objList.setCurrentIndex(nPosition);
}
int ValueOf(const QComboBox& objList)
{
    return objList.currentIndex();
}

void Show(QSpinBox& objSpin, int nValue)
{
    objSpin.setValue(nValue);
}
int ValueOf(const QSpinBox& objSpin)
{
    return objSpin.value();
}

// Of the three sources of an address one has a box: the directory service.
void Show(QCheckBox& objBox, int nSource)
{
    objBox.setChecked(nSource == 1);
}
int ValueOf(const QCheckBox& objBox)
{
    return objBox.isChecked() ? 1 : 0;
}

bool IsMissing(const stDef_RecorderForm& stForm, emDef_RecorderField nField)
{
    return (nField == emDef_RecorderField::Address && stForm.sAddress.isEmpty()) ||
           (nField == emDef_RecorderField::User && stForm.sUser.isEmpty()) ||
           (nField == emDef_RecorderField::Dips && stForm.sDips.isEmpty());
}

QLabel* MakeNote(const char* pszName)
{
    auto* const pNote = new QLabel;
    pNote->setObjectName(QString::fromLatin1(pszName));
    pNote->setWordWrap(true);
    pNote->setTextFormat(Qt::PlainText);
    pNote->hide();
    return pNote;
}

void Tell(QLabel& objNote, const QString& sText)
{
    objNote.setText(sText);
    objNote.setVisible(!sText.isEmpty());
}

} // namespace

CRecorderDialog::CRecorderDialog(CRecorderStore* pStore, int nNvrID, QWidget* pParent)
    : QDialog(pParent), vm_pStore(pStore), vm_nNvrID(nNvrID)
{
    setObjectName(u"RecorderDialog"_s);
    auto* const pLayout = new QVBoxLayout(this);
    vm_pForm = new QFormLayout;
    vm_pForm->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    pLayout->addLayout(vm_pForm);
    m_S_MakeFields();
    m_S_MakeTest();
    vm_pTwin = MakeNote("Twin");
    pLayout->addWidget(vm_pTwin);
    pLayout->addStretch();
    vm_pButtons = new CDialogButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    pLayout->addWidget(vm_pButtons);
    connect(vm_pButtons, &QDialogButtonBox::accepted, this, &CRecorderDialog::accept);
    connect(vm_pButtons, &QDialogButtonBox::rejected, this, &CRecorderDialog::reject);
    connect(&vm_objTest, &CConnectionTest::S_Done, this, &CRecorderDialog::m_S_ShowResult);
    m_S_Retranslate();
    m_S_Load(nNvrID >= 0 ? pStore->m_F_o_Form(nNvrID) : stDef_RecorderForm());
    setMinimumWidth(460);
    vm_pName->setFocus();
}

CRecorderDialog::~CRecorderDialog() = default;

QLabel* CRecorderDialog::m_F_p_AddRow(stDef_Text stLabel, QWidget* pField, emDef_RecorderField nField)
{
    auto* const pLabel = new QLabel;
    pLabel->setBuddy(pField);
    vm_arLabels.append({pLabel, stLabel});
    auto* const pColumn = new QVBoxLayout;
    pColumn->setSpacing(2);
    pColumn->addWidget(pField);
    vm_mapFaults[nField] = MakeNote("Fault");
    pColumn->addWidget(vm_mapFaults[nField]);
    vm_pForm->addRow(pLabel, pColumn);
    return pLabel;
}

QLineEdit* CRecorderDialog::m_F_p_AddEdit(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField)
{
    auto* const pEdit = new QLineEdit;
    pEdit->setObjectName(QString::fromLatin1(pszName));
    pEdit->setMaxLength(128);
    m_F_p_AddRow(stLabel, pEdit, nField);
    connect(pEdit, &QLineEdit::textChanged, this, &CRecorderDialog::m_S_Check);
    return pEdit;
}

QSpinBox* CRecorderDialog::m_F_p_AddNumber(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField,
                                           int nMax)
{
    auto* const pSpin = new QSpinBox;
    pSpin->setObjectName(QString::fromLatin1(pszName));
    pSpin->setRange(1, nMax);
    m_F_p_AddRow(stLabel, pSpin, nField);
    connect(pSpin, &QSpinBox::valueChanged, this, &CRecorderDialog::m_S_Check);
    return pSpin;
}

QComboBox* CRecorderDialog::m_F_p_AddChoice(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField,
                                            std::initializer_list<stDef_Text> arTexts)
{
    auto* const pChoice = new QComboBox;
    pChoice->setObjectName(QString::fromLatin1(pszName));
    for (const stDef_Text& stText : arTexts)
        pChoice->addItem(Tr(stText));
    vm_arChoices.append({pChoice, QList<stDef_Text>(arTexts)});
    m_F_p_AddRow(stLabel, pChoice, nField);
    connect(pChoice, &QComboBox::currentIndexChanged, this, &CRecorderDialog::m_S_Check);
    return pChoice;
}

template <class Value, class Control>
Control* CRecorderDialog::m_F_p_Bind(Value stDef_RecorderForm::*pMember, Control* pControl)
{
    vm_arBound.push_back({[=](const stDef_RecorderForm& stForm) { Show(*pControl, stForm.*pMember); },
                          [=](stDef_RecorderForm& stForm) { stForm.*pMember = ValueOf(*pControl); }});
    return pControl;
}

void CRecorderDialog::m_S_MakeFields()
{
    using enum emDef_RecorderField;
    using Form = stDef_RecorderForm;
    vm_pName = m_F_p_Bind(&Form::sName, m_F_p_AddEdit("Name", nsHost::FieldName, Name));
    m_F_p_Bind(&Form::nType, m_F_p_AddChoice("Type", nsHost::FieldType, Type, {nsHost::TypePC, nsHost::TypeEmbedded}));
    m_F_p_Bind(&Form::sAddress, m_F_p_AddEdit("IP", nsHost::FieldAddress, Address));
    vm_pFromDips = m_F_p_Bind(&Form::nDstType, new QCheckBox);
    vm_pFromDips->setObjectName(u"DstType"_s);
    vm_pForm->addRow(QString(), vm_pFromDips);
    connect(vm_pFromDips, &QCheckBox::toggled, this, &CRecorderDialog::m_S_Check);
    vm_pDips = m_F_p_Bind(&Form::sDips, m_F_p_AddEdit("DIPS", nsHost::FieldDips, Dips));
    m_F_p_Bind(&Form::nHttpPort, m_F_p_AddNumber("HttpPort", nsHost::FieldHttpPort, HttpPort, 65535));
    m_F_p_Bind(&Form::nRtspPort, m_F_p_AddNumber("RtspPort", nsHost::FieldRtspPort, RtspPort, 65535));
    m_F_p_Bind(&Form::nStreamType,
               m_F_p_AddChoice("StreamType", nsHost::FieldTransport, StreamType,
                               {nsHost::TransportTunnel, nsHost::TransportTCP, nsHost::TransportUDP}));
    m_F_p_Bind(&Form::sUser, m_F_p_AddEdit("UID", nsHost::FieldUser, User));
    vm_pPassword = m_F_p_Bind(&Form::sPassword, new QLineEdit);
    vm_pPassword->setObjectName(u"PWD"_s);
    vm_pPassword->setEchoMode(QLineEdit::Password);
    vm_pPassword->setMaxLength(128);
    auto* const pLabel = new QLabel;
    pLabel->setBuddy(vm_pPassword);
    vm_arLabels.append({pLabel, nsHost::FieldPassword});
    vm_pForm->addRow(pLabel, vm_pPassword);
    vm_pShow = new QCheckBox;
    vm_pShow->setObjectName(u"ShowPassword"_s);
    vm_pForm->addRow(QString(), vm_pShow);
    connect(vm_pShow, &QCheckBox::toggled, this,
            [this](bool bOn) { vm_pPassword->setEchoMode(bOn ? QLineEdit::Normal : QLineEdit::Password); });
    vm_pChannels = m_F_p_Bind(
        &Form::nChannels, m_F_p_AddNumber("Channels", nsHost::FieldChannels, Channels, CRecorderStore::MaxChannels));
}

void CRecorderDialog::m_S_MakeTest()
{
    vm_pTest = new QPushButton;
    vm_pTest->setObjectName(u"Test"_s);
    vm_pTest->setAutoDefault(false);
    vm_pTake = new QPushButton;
    vm_pTake->setObjectName(u"TakeChannels"_s);
    vm_pTake->setAutoDefault(false);
    vm_pTake->hide();
    vm_pVerdict = MakeNote("Verdict");
    auto* const pRow = new QHBoxLayout;
    pRow->addWidget(vm_pTest);
    pRow->addWidget(vm_pTake);
    pRow->addStretch();
    auto* const pLayout = static_cast<QVBoxLayout*>(layout());
    pLayout->addLayout(pRow);
    pLayout->addWidget(vm_pVerdict);
    connect(vm_pTest, &QPushButton::clicked, this, &CRecorderDialog::m_S_ToggleTest);
    connect(vm_pTake, &QPushButton::clicked, this, [this] {
        vm_pChannels->setValue(vm_stResult.nChannels);
        vm_pTake->hide();
        vm_pChannels->setFocus();
    });
}

void CRecorderDialog::m_S_Load(stDef_RecorderForm stForm)
{
    if (stForm.sName == stForm.sAddress)
        stForm.sName.clear(); // the address stands for it
    for (const stDef_Bound& stBound : vm_arBound)
        stBound.fnShow(stForm);
    m_S_Check();
}

stDef_RecorderForm CRecorderDialog::m_F_o_Form() const
{
    stDef_RecorderForm stForm;
    for (const stDef_Bound& stBound : vm_arBound)
        stBound.fnTake(stForm);
    return stForm;
}

void CRecorderDialog::m_S_Check()
{
    if (!vm_pButtons)
        return;
    const stDef_RecorderForm stForm = m_F_o_Form();
    const QList<stDef_FormFault> arFaults = CRecorderStore::s_F_ar_Faults(stForm);
    for (auto it = vm_mapFaults.begin(); it != vm_mapFaults.end(); ++it) {
        const auto pFault = std::find_if(arFaults.begin(), arFaults.end(),
                                         [&it](const stDef_FormFault& stFault) { return stFault.nField == it.key(); });
        Tell(*it.value(), pFault == arFaults.end() ? QString() : pFault->sText);
        // What is only missing is told quietly, what is wrong is not.
        Tint(*it.value(), IsMissing(stForm, it.key()) ? emDef_LiveState::Idle : emDef_LiveState::Refused);
    }
    vm_pDips->setEnabled(vm_pFromDips->isChecked());
    QPushButton* const pOk = vm_pButtons->button(QDialogButtonBox::Ok);
    pOk->setEnabled(arFaults.isEmpty());
    pOk->setToolTip(arFaults.isEmpty() ? QString() : arFaults[0].sText);
    vm_pTest->setEnabled(vm_objTest.m_F_b_Running() || (arFaults.isEmpty() && !stForm.sAddress.trimmed().isEmpty()));
    const int nTwin = vm_pStore->m_F_n_Twin(stForm, vm_nNvrID);
    Tell(*vm_pTwin, nTwin < 0 ? QString() : Tr(nsHost::TwinWarning).arg(vm_pStore->m_F_o_Form(nTwin).sName));
    Tint(*vm_pTwin, emDef_LiveState::Connecting);
}

void CRecorderDialog::m_S_ToggleTest()
{
    vm_pTake->hide();
    Tint(*vm_pVerdict, emDef_LiveState::Connecting);
    if (vm_objTest.m_F_b_Running()) {
        vm_objTest.m_S_Stop();
        Tell(*vm_pVerdict, Tr(nsHost::TestStopped));
    } else {
        stDef_RecorderForm stForm = m_F_o_Form();
        if (stForm.sPassword.isEmpty() && vm_nNvrID >= 0)
            stForm.sPassword = CSFunc::s_F_s_AnsiToUnicode(vm_pStore->m_F_o_InitRecord(vm_nNvrID).sPWD);
        Tell(*vm_pVerdict, Tr(stForm.nDstType == 1 ? nsHost::TestDips : nsHost::TestRunning));
        vm_objTest.m_S_Start(stForm);
    }
    vm_pTest->setText(Tr(vm_objTest.m_F_b_Running() ? nsHost::TestStop : nsHost::TestButton));
}

void CRecorderDialog::m_S_ShowResult(const stDef_TestResult& stResult)
{
    vm_stResult = stResult;
    const bool bFine = stResult.nVerdict == stDef_TestResult::emDef_Verdict::Fine;
    Tint(*vm_pVerdict, bFine ? emDef_LiveState::Live : emDef_LiveState::Refused);
    Tell(*vm_pVerdict, stResult.m_F_s_Text(m_F_o_Form()));
    vm_pTest->setText(Tr(nsHost::TestButton));
    vm_pTake->setText(Tr(nsHost::TestTakeChannels).arg(stResult.nChannels));
    vm_pTake->setVisible(stResult.nChannels > 0 && stResult.nChannels != vm_pChannels->value());
    m_S_Check();
}

void CRecorderDialog::accept()
{
    if (!vm_pButtons->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    QString sError;
    int nNvrID = vm_nNvrID;
    if (nNvrID < 0) {
        const stDef_AddResult stResult = vm_pStore->m_F_o_Add(m_F_o_Form());
        nNvrID = stResult.nNvrID;
        sError = stResult.sError;
    } else {
        sError = vm_pStore->m_F_s_Edit(nNvrID, m_F_o_Form());
    }
    if (!sError.isEmpty()) {
        CPrompts::s_S_Message(this, sError, windowTitle());
        return;
    }
    vm_nNvrID = nNvrID;
    QDialog::accept();
}

void CRecorderDialog::done(int nResult)
{
    vm_objTest.m_S_Stop();
    QDialog::done(nResult);
}

// A note that takes several lines would be squeezed into the height that the dialog has.
bool CRecorderDialog::event(QEvent* pEvent)
{
    const bool bTaken = QDialog::event(pEvent);
    if (pEvent->type() == QEvent::LayoutRequest)
        resize(width(), std::max(height(), layout()->totalHeightForWidth(width())));
    return bTaken;
}

void CRecorderDialog::changeEvent(QEvent* pEvent)
{
    QDialog::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
    if (pEvent->type() == QEvent::PaletteChange)
        m_S_Check();
}

void CRecorderDialog::m_S_Retranslate()
{
    setWindowTitle(Tr(vm_nNvrID < 0 ? nsHost::DialogAdd : nsHost::DialogEdit));
    for (const auto& [pLabel, stText] : std::as_const(vm_arLabels))
        pLabel->setText(Tr(stText));
    for (const auto& [pChoice, arTexts] : std::as_const(vm_arChoices)) {
        for (int i = 0; i < arTexts.size(); ++i)
            pChoice->setItemText(i, Tr(arTexts[i]));
    }
    vm_pName->setPlaceholderText(Tr(nsHost::FieldNameHint));
    vm_pPassword->setPlaceholderText(vm_nNvrID < 0 ? QString() : Tr(nsHost::FieldPasswordKept));
    vm_pFromDips->setText(Tr(nsHost::FieldFromDips));
    vm_pShow->setText(Tr(nsHost::FieldShowPassword));
    vm_pTest->setText(Tr(vm_objTest.m_F_b_Running() ? nsHost::TestStop : nsHost::TestButton));
    m_S_Check();
}
