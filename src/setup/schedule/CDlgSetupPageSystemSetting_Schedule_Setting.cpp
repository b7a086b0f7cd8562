#include "setup/schedule/CDlgSetupPageSystemSetting_Schedule_Setting.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "setup/schedule/stDef_RecordType.h"
#include "toolkit/controls/CTimePicker.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CPrompts.h"

using namespace Qt::StringLiterals;

using Dialog = CDlgSetupPageSystemSetting_Schedule_Setting;
using Record = stDef_ScheduleRecord;

namespace {

constexpr Text TitleText{"Setting", "Setting"};
constexpr Text InputTitle{"DISetting", "DI Setting"};
constexpr Text UnitText{"Secord", "Secord"};
constexpr Text LocalText{"Local", "Local"};
constexpr Text OrderText{"Edit", "Start Time More Then End Time!"};
constexpr Text TakenText{"EditRange", "Time Range Is Incorrect!"};
constexpr stDef_Choice g_aStates[] = {{Text{"False", "False"}, 0}, {Text{"True", "True"}, 1}};

constexpr int InputMode = 3;
constexpr int EventMode = 4;

// An entry of the inputs has its camera and its number behind it, packed into one. What would be camera 16 stands for
// the recorder, so that no input of that camera can be told from one of the recorder's.
constexpr int InputsPerCamera = 1000;
constexpr int RecorderInPack = 16;

int ToMinutes(quint64 nTime)
{
    return static_cast<int>(std::min(nTime, TimeLine::Day) / TimeLine::Minute);
}

} // namespace

Dialog::CDlgSetupPageSystemSetting_Schedule_Setting(CWndNvrEmbedded* pNvr, TIME_STATE* pItem, int nCamera, int nDay,
                                                    int nRecord, QWidget* pParent)
    : CFormDialog(TitleText, pParent),
      vm_pEnv(pNvr->vm_pEnv),
      vm_pNvr(pNvr),
      vm_pItem(pItem),
      vm_nCamera(nCamera),
      vm_nDay(nDay),
      vm_nRecord(nRecord),
      vm_objSchedule(&pNvr->vm_xmlSchedule)
{
    m_S_Make();
    m_S_Show();
    m_S_Finish(*pNvr);
    vm_pStart->setFocus();
}

void Dialog::m_S_Make()
{
    m_F_o_Form().m_S_BeginColumn();
    m_S_MakeTime();
    m_F_o_Form().m_S_BeginColumn();
    m_S_MakeType();
}

void Dialog::m_S_MakeTime()
{
    CFormGroup grp(m_F_o_Form(), Text{"Time", "Time"});
    vm_pStart = grp.m_F_p_Time(Text{"StartTime", "Start Time"}, "StartTime");
    vm_pEnd = grp.m_F_p_Time(Text{"EndTime", "End Time"}, "EndTime");
    vm_objValues.m_F_p_Bind<nsForms::AsSeconds>(&Record::nPre,
                                                grp.m_F_p_Seconds(Text{"PreAlarm", "PreAlarm"}, "Pre", UnitText));
    vm_objValues.m_F_p_Bind<nsForms::AsSeconds>(&Record::nPost,
                                                grp.m_F_p_Seconds(Text{"PostAlarm", "PostAlarm"}, "Post", UnitText));
}

void Dialog::m_S_MakeType()
{
    CFormGroup grpType(m_F_o_Form(), Text{"RecordType", "Record Type"});
    QList<stDef_Choice> arTypes;
    for (const stDef_RecordType& st : stDef_RecordType::s_F_ar_All())
        arTypes.append({st.stText, st.nMode});
    QButtonGroup* const pTypes =
        vm_objValues.m_F_p_Bind<nsForms::ByButton>(&Record::nMode, grpType.m_F_p_Choices("Mode", arTypes));
    QCheckBox* const pForce = vm_objValues.m_F_p_Bind<nsForms::AsCheck>(
        &Record::nEventForceRecord, grpType.m_F_p_Check(Text{"EventFR", "Event Force Record"}, "EventForceRecord"));

    CFormGroup grpInput(m_F_o_Form(), InputTitle);
    vm_pInputs = new QComboBox;
    m_F_o_Form().m_F_o_Texts().m_S_Add(InputTitle, [this](const QString& s) { vm_pInputs->setAccessibleName(s); });
    grpInput.m_S_AddWide(vm_pInputs, "DI");
    QButtonGroup* const pStates =
        vm_objValues.m_F_p_Bind<nsForms::ByButton>(&Record::nDIMode, grpInput.m_F_p_Choices("DIMode", g_aStates, true));

    CRules& objRules = m_F_o_Form().m_F_o_Rules();
    QAbstractButton* const pEvent = pTypes->button(EventMode);
    objRules.m_S_Enable({pForce}, {{pEvent, false}});
    objRules.m_S_Enable({vm_pInputs, pStates->button(0), pStates->button(1)}, {{pTypes->button(InputMode)}});
    objRules.m_S_Also([=] {
        if (pEvent->isChecked())
            pForce->setChecked(true);
    });
}

void Dialog::m_S_Show()
{
    vm_pStart->m_S_SetMinutes(ToMinutes(vm_pItem->nStart));
    vm_pEnd->m_S_SetMinutes(ToMinutes(vm_pItem->nEnd));
    const Record st = vm_objSchedule.m_F_o_Record(vm_nCamera, vm_nDay, vm_nRecord);
    vm_objValues.m_S_Show(st);
    if (vm_pNvr->vm_xmlSystemInfo.m_F_b_IsOpen() && vm_pNvr->vm_xmlCamera.m_F_b_IsOpen())
        m_S_FillInputs(st);
}

// Those of the camera, then the recorder's own.
void Dialog::m_S_FillInputs(const Record& st)
{
    const CNumberedNodes objCameras(&vm_pNvr->vm_xmlCamera, u"/root/Camera"_s, u"Cam"_s);
    const int nOfCamera = vm_pNvr->vm_xmlCamera.m_F_n_GetValueInt(objCameras.m_F_s_Path(vm_nCamera), u"DINum"_s, 1);
    const int nOfRecorder = vm_pNvr->vm_xmlSystemInfo.m_F_n_GetValueInt(u"/root/Local"_s, u"DINum"_s, 1);
    const QString sLocal = vm_pNvr->m_F_s_Text(LocalText, QString::fromUtf8(LocalText.pszDefault));
    const bool bLocal = st.nDICam == Record::LocalInput;
    m_S_AddInputs(u"DI_%1"_s, nOfCamera, vm_nCamera * InputsPerCamera, bLocal ? -1 : st.nDIID);
    m_S_AddInputs(sLocal + u" DI_%1"_s, nOfRecorder, RecorderInPack * InputsPerCamera, bLocal ? st.nDIID : -1);
}

// An empty list chooses its first entry by itself, and keeps it where no other is chosen.
void Dialog::m_S_AddInputs(const QString& sFormat, int nCount, int nFirstData, int nChosen)
{
    for (int i = 0; i < std::min(nCount, InputsPerCamera); ++i) {
        vm_pInputs->addItem(sFormat.arg(i), nFirstData + i);
        if (i == nChosen)
            vm_pInputs->setCurrentIndex(vm_pInputs->count() - 1);
    }
}

void Dialog::m_S_TakeInput(Record& st) const
{
    if (vm_pInputs->currentIndex() < 0)
        return;
    const int nData = vm_pInputs->currentData().toInt(), nCamera = nData / InputsPerCamera;
    st.nDICam = nCamera == RecorderInPack ? Record::LocalInput : nCamera;
    st.nDIID = nData % InputsPerCamera;
}

bool Dialog::m_F_b_Refused(int nStart, int nEnd)
{
    const bool bOrder = nEnd <= nStart;
    if (!bOrder && !vm_objSchedule.m_F_b_IsTaken(vm_nCamera, vm_nDay, vm_nRecord, nStart, nEnd))
        return false;
    CPrompts::s_S_Message(this, vm_pNvr->m_F_s_Text(bOrder ? OrderText : TakenText),
                          vm_pNvr->m_F_s_Text(nsTexts::Error));
    return true;
}

void Dialog::accept()
{
    const int nStart = vm_pStart->m_F_n_Minutes(), nEnd = vm_pEnd->m_F_n_Minutes();
    Record st = vm_objSchedule.m_F_o_Record(vm_nCamera, vm_nDay, vm_nRecord);
    vm_objValues.m_S_Take(st);
    m_S_TakeInput(st);
    st.m_S_SetSpan(nStart, nEnd);
    if (vm_objSchedule.m_F_b_IsOpen()) {
        if (m_F_b_Refused(nStart, nEnd))
            return;
        vm_nRecord = vm_objSchedule.m_F_n_Set(vm_nCamera, vm_nDay, vm_nRecord, st);
    }
    const TIME_STATE stBlock = st.m_F_o_Block();
    vm_pItem->nStart = stBlock.nStart;
    vm_pItem->nEnd = stBlock.nEnd;
    vm_pItem->nColor = stBlock.nColor;
    CFormDialog::accept();
}
