#include "parameter/CDlgParameter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <algorithm>

#include "core/CWndNvrShared.h"
#include "drivers/CCamObj_Base.h"
#include "parameter/CStreamEntries.h"
#include "parameter/ParameterLists.h"
#include "toolkit/controls/WrongMark.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CMnemonics.h"
#include "toolkit/user/CPrompts.h"

using namespace Qt::StringLiterals;
namespace lists = nsParameterLists;

namespace {

constexpr Text BitrateText{"Bitrate", "Bitrate"};
constexpr Text FpsText{"FPS", "FPS"};
constexpr Text RateControlText{"RateControl", "Rate Control"};
constexpr Text QualityText{"Quality", "Quality"};
constexpr Text OverText{"Over", "Over Range"};
constexpr Text ErrorText{"Error119", "Error"};
constexpr Text NoAbilitiesText{"ParameterNoAbilities", "The recorder did not tell what this camera can do."};
constexpr Text RangeText{"ParameterRange", "Out of range: %1"};

constexpr int SupportMs = 60000;
constexpr int OddGain = 90;
constexpr const char* g_apszTransports[] = {"HTTP", "TCP", "UDP", "Muticast"};
constexpr const char* g_apszRateControls[] = {"VBR", "CBR", "EVBR"};
constexpr int Vbr = 0, Cbr = 1;

/// The camera's connection where it has documents, as all that have cameras do.
CWndNvrShared* Shared(CCamObj_Base* pCamObj)
{
    return qobject_cast<CWndNvrShared*>(pCamObj->m_pNvr);
}

} // namespace

CDlgParameter::CDlgParameter(const stDef_ParameterBrand& stBrand, CCamObj_Base* pCamObj)
    : CSettingPage(pCamObj->m_pNvr),
      m_pCamObj(pCamObj),
      m_pNvr(Shared(pCamObj)),
      m_pEnv(pCamObj->m_pEnv),
      vm_stBrand(stBrand),
      vm_objAbilities(m_xmlSupport),
      vm_stMain{&stBrand.stFps, &stBrand.stQuality, "FPS", "RateControl", "Compression", "Bitrate"},
      vm_stLow{&stBrand.stLowFps, &stBrand.stLowQuality, "LowFPS", "LowRateControl", "LowCompression", "LowBitrate"}
{}

// ---- Making ----

void CDlgParameter::m_S_Make(CForm& objForm)
{
    objForm.m_S_BeginColumn();
    m_S_MakeMain(objForm);
    if (vm_stBrand.stLowFps.nItems != emDef_Items::None)
        m_S_MakeLow(objForm);
    objForm.m_S_BeginColumn();
    m_S_MakeAudio(objForm);
    // Behind the rows of the groups: this word has the limits with it.
    objForm.m_F_o_Texts().m_S_Add(BitrateText, [this](const QString& sWord) {
        vm_sBitrateWord = sWord;
        m_S_ShowRanges();
    });
    m_S_Connect();
}

void CDlgParameter::m_S_MakeMain(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"BitrateSetting", "Bitrate Setting"});
    vm_pProfile = m_F_p_List(grp, Text{"Profile", "Profile"}, "Profile");
    vm_stMain.pFps = m_F_p_List(grp, FpsText, "FPS");
    vm_pProtocol = m_F_p_List(grp, Text{"Protocol", "Protocol"}, "Protocol");
    if (vm_stBrand.bRateControl)
        vm_stMain.pRateControl = m_F_p_List(grp, RateControlText, "RateControl");
    vm_stMain.pQuality = m_F_p_List(grp, QualityText, "Quality");
    vm_stMain.pBitrate = m_F_p_Bitrate(grp, "Bitrate");
}

void CDlgParameter::m_S_MakeLow(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"LowBitrateSetting", "Low Bitrate Setting"});
    vm_stLow.pFps = m_F_p_List(grp, FpsText, "LowFPS");
    if (vm_stBrand.stWithFps.pszKey)
        vm_pWithFps = grp.m_F_p_Check(vm_stBrand.stWithFps, "WithFPS");
    if (vm_stBrand.bLowRateControl)
        vm_stLow.pRateControl = m_F_p_List(grp, RateControlText, "LowRateControl");
    vm_stLow.pQuality = m_F_p_List(grp, QualityText, "LowQuality");
    if (vm_stBrand.bLowBitrate)
        vm_stLow.pBitrate = m_F_p_Bitrate(grp, "LowBitrate");
}

void CDlgParameter::m_S_MakeAudio(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Audio", "Audio"});
    vm_pEnableAudio = grp.m_F_p_Check(Text{"EnableAudio", "Enable Audio"}, "EnableAudio");
    vm_pAudioCodec = m_F_p_MakeAudioCodec(grp);
    vm_pAudioRecord = grp.m_F_p_Check(Text{"AudioRecord", "Audio Record"}, "AudioRecord");
    if (vm_stBrand.stInputGain.nItems != emDef_Items::None)
        vm_pInputGain = m_F_p_List(grp, Text{"InputGain", "Input Gain"}, "InputGain");
    if (vm_stBrand.stOutputGain.nItems != emDef_Items::None)
        vm_pOutputGain = m_F_p_List(grp, Text{"OutputGain", "Output Gain"}, "OutputGain");
    if (vm_stBrand.bTwoWayAudio)
        vm_pTwoWayAudio = grp.m_F_p_Check(Text{"TwoWayAudio", "Two Way Audio"}, "TwoWayAudio");
}

QComboBox* CDlgParameter::m_F_p_List(CFormGroup& grp, const Text& stLabel, const char* pszName)
{
    return grp.m_F_p_List(stLabel, pszName, QStringList());
}

QLineEdit* CDlgParameter::m_F_p_Bitrate(CFormGroup& grp, const char* pszName)
{
    static const QRegularExpression s_objDigits(u"[0-9]{0,10}"_s);
    QLineEdit* const pEdit = grp.m_F_p_Edit(BitrateText, pszName);
    pEdit->setValidator(new QRegularExpressionValidator(s_objDigits, pEdit));
    return pEdit;
}

// A user's choices alone: what the page sets itself runs no handler.
void CDlgParameter::m_S_Connect()
{
    const auto OnChoice = [this](QComboBox* pList, void (CDlgParameter::*fnHandler)()) {
        if (pList)
            connect(pList, &QComboBox::activated, this, fnHandler);
    };
    const auto OnClick = [this](QCheckBox* pBox, void (CDlgParameter::*fnHandler)()) {
        if (pBox)
            connect(pBox, &QCheckBox::clicked, this, fnHandler);
    };
    OnChoice(vm_pProfile, &CDlgParameter::m_S_OnProfile);
    OnChoice(vm_stMain.pFps, &CDlgParameter::m_S_OnFps);
    OnChoice(vm_stMain.pRateControl, &CDlgParameter::m_S_OnRateControl);
    OnChoice(vm_stLow.pRateControl, &CDlgParameter::m_S_OnLowRateControl);
    OnClick(vm_pWithFps, &CDlgParameter::m_S_OnWithFps);
    OnClick(vm_pEnableAudio, &CDlgParameter::m_S_OnEnableAudio);
}

// ---- Opening ----

void CDlgParameter::m_S_Loaded()
{
    m_pCamObj->m_F_b_GetSupport(&m_xmlSupport, SupportMs);
    if (!m_F_b_Ready()) {
        setEnabled(false);
        return;
    }
    m_S_FillProfiles();
    m_S_FillProtocol();
    m_S_FillFps(vm_stMain);
    m_S_FillFps(vm_stLow);
    m_S_ShowLowFps();
    m_S_FillRateControls();
    m_S_FillQuality(vm_stMain);
    m_S_FillQuality(vm_stLow);
    m_S_FillGain(vm_pInputGain, vm_stBrand.stInputGain, "InputGain");
    m_S_FillGain(vm_pOutputGain, vm_stBrand.stOutputGain, "OutputGain");
    m_S_ShowBitrate(vm_stMain, emDef_Fill::Opening);
    m_S_ShowBitrate(vm_stLow, emDef_Fill::Opening);
    m_S_FillAudio();
    m_S_ShowRanges();
    m_S_OnProfile();
    m_S_OnEnableAudio();
}

void CDlgParameter::m_S_Opened()
{
    if (!isEnabled())
        m_S_Tell(m_F_s_Line(NoAbilitiesText));
    vm_sOpened = m_F_s_State();
}

bool CDlgParameter::m_F_b_Ready() const
{
    return m_pNvr && m_pNvr->vm_xmlCamera.m_F_b_IsOpen() && m_xmlSupport.m_F_b_IsOpen();
}

void CDlgParameter::m_S_FillProfiles()
{
    const CStreamEntries objEntries(vm_stBrand, vm_objAbilities, m_pNvr->vm_xmlCamera, m_pCamObj->m_F_s_NodePath());
    const QStringList arLabels = objEntries.m_F_ar_Labels();
    const int nFound = objEntries.m_F_n_Main();
    // A stream that is found by its size is none of the list's until one has that size.
    const bool bBySize = vm_stBrand.nMatch == emDef_EntryMatch::Size;
    vm_nEntry = nFound < 0 && bBySize ? static_cast<int>(arLabels.size()) : std::max(nFound, 0);
    m_nLowEntry = objEntries.m_F_n_Low();
    vm_pProfile->clear();
    vm_pProfile->addItems(arLabels);
    vm_pProfile->setCurrentIndex(arLabels.isEmpty() ? -1 : std::max(nFound, 0));
}

void CDlgParameter::m_S_FillProtocol()
{
    lists::FillOffered(*vm_pProtocol, g_apszTransports, vm_objAbilities.m_F_s_Text(u"/root/Support"_s, u"Protocol"_s));
    lists::ChooseData(*vm_pProtocol, m_F_n_NodeNumber("Protocol", 1));
}

void CDlgParameter::m_S_FillRateControls()
{
    const QString sOffered = vm_objAbilities.m_F_s_Text(u"/root/Support"_s, u"RateControl"_s);
    for (const stDef_Stream* const pStream : {&vm_stMain, &vm_stLow}) {
        if (pStream->pRateControl)
            lists::FillOffered(*pStream->pRateControl, g_apszRateControls, sOffered);
        m_S_ShowRateControl(*pStream);
    }
}

void CDlgParameter::m_S_FillAudio()
{
    if (vm_pAudioCodec && !m_F_b_FillAudioCodec(*vm_pAudioCodec)) {
        for (QWidget* const pWidget : {static_cast<QWidget*>(vm_pEnableAudio), static_cast<QWidget*>(vm_pAudioCodec),
                                       static_cast<QWidget*>(vm_pAudioRecord)})
            pWidget->setEnabled(false);
        return;
    }
    vm_pEnableAudio->setChecked(m_F_n_NodeNumber("EnableAudio") != 0);
    vm_pAudioRecord->setChecked(m_F_n_NodeNumber("EnableAudio_Record") != 0);
    if (vm_pTwoWayAudio)
        vm_pTwoWayAudio->setChecked(m_F_n_NodeNumber("EnableTwoWayAudio") != 0);
}

// ---- Values ----

QString CDlgParameter::m_F_s_NodeText(const char* pszKey) const
{
    return m_pNvr->vm_xmlCamera.m_F_s_Value(m_pCamObj->m_F_s_NodePath(), QString::fromLatin1(pszKey));
}

int CDlgParameter::m_F_n_NodeNumber(const char* pszKey, int nDefault) const
{
    return m_pNvr->vm_xmlCamera.m_F_n_GetValueInt(m_pCamObj->m_F_s_NodePath(), QString::fromLatin1(pszKey), nDefault);
}

void CDlgParameter::m_S_Write(const char* pszKey, const QString& sValue)
{
    m_pNvr->vm_xmlCamera.m_F_b_SetValue(m_pCamObj->m_F_s_NodePath(), QString::fromLatin1(pszKey), sValue);
}

QString CDlgParameter::m_F_s_EntryOf(const stDef_Stream& stStream) const
{
    return CAbilities::s_F_s_Entry(m_F_b_IsMain(stStream) ? vm_nEntry : m_nLowEntry);
}

CAbilities::stDef_Limits CDlgParameter::m_F_o_Limits(const stDef_LimitsAt& stAt) const
{
    const QString sPath = stAt.nNode == emDef_LimitsNode::Entry      ? CAbilities::s_F_s_Entry(vm_nEntry)
                          : stAt.nNode == emDef_LimitsNode::LowEntry ? CAbilities::s_F_s_Entry(m_nLowEntry)
                                                                     : QString::fromLatin1(stAt.pszPath);
    return {vm_objAbilities.m_F_n_Number(sPath, QString::fromLatin1(stAt.pszMin)),
            vm_objAbilities.m_F_n_Number(sPath, QString::fromLatin1(stAt.pszMax), stAt.nMaxDefault)};
}

CAbilities::stDef_Limits CDlgParameter::m_F_o_BitrateLimits(const stDef_Stream& stStream) const
{
    return m_F_o_Limits(m_F_b_IsMain(stStream) ? vm_stBrand.stBitrate : vm_stBrand.stLowBitrate);
}

void CDlgParameter::m_S_FillList(QComboBox* pList, const stDef_ListSource& stSource, int nValue)
{
    if (!pList)
        return;
    lists::Fill(*pList, stSource, vm_objAbilities, m_F_o_Limits(stSource.stLimits));
    m_S_Choose(pList, stSource, nValue);
}

void CDlgParameter::m_S_Choose(QComboBox* pList, const stDef_ListSource& stSource, int nValue) const
{
    lists::Choose(*pList, stSource, nValue, m_F_o_Limits(stSource.stLimits));
}

void CDlgParameter::m_S_FillFps(const stDef_Stream& stStream)
{
    m_S_FillList(stStream.pFps, *stStream.pFpsSource, m_F_n_NodeNumber(stStream.pszFps));
}

void CDlgParameter::m_S_FillQuality(const stDef_Stream& stStream)
{
    m_S_FillList(stStream.pQuality, *stStream.pQualitySource, m_F_n_NodeNumber(stStream.pszQuality));
}

// A gain that a list of a hundred can't show gets a usable one: 0 would be silence.
void CDlgParameter::m_S_FillGain(QComboBox* pList, const stDef_ListSource& stSource, const char* pszKey)
{
    int nGain = m_F_n_NodeNumber(pszKey, 1);
    if (stSource.nItems == emDef_Items::Hundred && (nGain < 1 || nGain > 100))
        nGain = OddGain;
    m_S_FillList(pList, stSource, nGain);
}

void CDlgParameter::m_S_ShowLowFps()
{
    if (!vm_stLow.pFps)
        return;
    int nFps = m_F_n_NodeNumber(vm_stLow.pszFps);
    if (vm_pWithFps) {
        vm_pWithFps->setChecked(m_F_n_NodeNumber("WithFPS") != 0);
        if (vm_pWithFps->isChecked()) {
            nFps = lists::Data(*vm_stMain.pFps);
            vm_stLow.pFps->setEnabled(false);
        }
    }
    m_S_Choose(vm_stLow.pFps, vm_stBrand.stLowFps, nFps);
}

void CDlgParameter::m_S_ShowRateControl(const stDef_Stream& stStream)
{
    if (stStream.pRateControl)
        lists::ChooseData(*stStream.pRateControl, m_F_n_NodeNumber(stStream.pszRateControl));
}

void CDlgParameter::m_S_ShowBitrate(const stDef_Stream& stStream, emDef_Fill nFill)
{
    if (stStream.pBitrate)
        stStream.pBitrate->setText(m_F_s_BitrateShown(stStream, nFill));
}

QString CDlgParameter::m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const
{
    const int nBitrate = m_F_n_NodeNumber(stStream.pszBitrate);
    CAbilities::stDef_Limits stLimits = m_F_o_BitrateLimits(stStream);
    if (nFill == emDef_Fill::RateControl)
        return stStream.pBitrate->text();
    if (vm_stBrand.pszShownBitrate)
        stLimits = m_F_o_Limits({.pszPath = vm_stBrand.pszShownBitrate});
    if (!vm_stBrand.bZeroIsNoLimit)
        return QString::number(CAbilities::s_F_n_Clamp(nBitrate, stLimits));
    if (stLimits.nMax != 0 && nBitrate > stLimits.nMax)
        return QString::number(stLimits.nMax);
    return QString::number(stLimits.nMin != 0 && nBitrate < stLimits.nMin ? stLimits.nMin : nBitrate);
}

/// The limits in the labels; a change of them takes the label's mnemonic along.
void CDlgParameter::m_S_ShowRanges()
{
    if (vm_stBrand.bZeroIsNoLimit)
        return;
    for (const stDef_Stream* const pStream : {&vm_stMain, &vm_stLow}) {
        if (!pStream->pBitrate)
            continue;
        const auto [nMin, nMax] = m_F_o_BitrateLimits(*pStream);
        CForm::s_F_p_LabelOf(pStream->pBitrate)
            ->setText(u"%1 (%2 ~ %3 Kbps) : "_s.arg(vm_sBitrateWord).arg(nMin).arg(nMax));
    }
    if (isVisible())
        CMnemonics::s_S_Assign(this);
}

// ---- Handlers ----

void CDlgParameter::m_S_OnProfile()
{
    if (vm_pProfile->currentIndex() < 0)
        return;
    vm_nEntry = vm_pProfile->currentIndex();
    // In the order of the steps.
    static constexpr void (*s_arSteps[])(CDlgParameter&) = {
        [](CDlgParameter& o) { o.m_S_FillFps(o.vm_stMain); },
        [](CDlgParameter& o) { o.m_S_ShowLowFps(); },
        [](CDlgParameter& o) { o.m_S_ShowRateControl(o.vm_stMain); },
        [](CDlgParameter& o) { o.m_S_ShowRateControl(o.vm_stLow); },
        [](CDlgParameter& o) { o.m_S_FillQuality(o.vm_stMain); },
        [](CDlgParameter& o) { o.m_S_FillQuality(o.vm_stLow); },
        [](CDlgParameter& o) { o.m_S_ShowBitrate(o.vm_stMain, emDef_Fill::Profile); },
        [](CDlgParameter& o) { o.m_S_ShowBitrate(o.vm_stLow, emDef_Fill::Profile); },
        [](CDlgParameter& o) { o.m_S_EnableLowStream(); },
        [](CDlgParameter& o) { o.m_S_OnFps(); },
        [](CDlgParameter& o) { o.m_S_OnRateControl(); },
        [](CDlgParameter& o) { o.m_S_OnWithFps(); },
        [](CDlgParameter& o) { o.m_S_OnLowRateControl(); },
    };
    for (const emDef_ProfileStep nStep : vm_stBrand.arProfileSteps)
        s_arSteps[static_cast<std::size_t>(nStep)](*this);
    m_S_ShowRanges();
}

// With the low stream as wide as the main one it can't differ from that.
void CDlgParameter::m_S_EnableLowStream()
{
    const auto Width = [this](int nEntry) {
        return vm_objAbilities.m_F_n_Number(CAbilities::s_F_s_Entry(nEntry), u"Width"_s);
    };
    const bool bWider = Width(vm_nEntry) > Width(m_nLowEntry);
    vm_pWithFps->setEnabled(bWider);
    if (vm_stLow.pRateControl)
        vm_stLow.pRateControl->setEnabled(bWider);
    if (bWider && vm_stLow.pRateControl) {
        s_S_EnableByRateControl(vm_stLow);
    } else {
        vm_stLow.pQuality->setEnabled(bWider);
        vm_stLow.pBitrate->setEnabled(bWider);
    }
    if (!bWider) {
        vm_stLow.pFps->setEnabled(false);
        vm_pWithFps->setChecked(true);
    }
}

// One that the list doesn't have leaves all as it is.
void CDlgParameter::s_S_EnableByRateControl(const stDef_Stream& stStream)
{
    const int nRateControl = lists::Data(*stStream.pRateControl);
    if (nRateControl < 0)
        return;
    stStream.pQuality->setEnabled(nRateControl != Cbr);
    if (stStream.pBitrate)
        stStream.pBitrate->setEnabled(nRateControl != Vbr);
}

void CDlgParameter::m_S_OnFps()
{
    if (vm_pWithFps && vm_pWithFps->isChecked())
        m_S_Choose(vm_stLow.pFps, vm_stBrand.stLowFps, lists::Data(*vm_stMain.pFps));
}

void CDlgParameter::m_S_OnRateControl()
{
    s_S_EnableByRateControl(vm_stMain);
    m_S_ShowBitrate(vm_stMain, emDef_Fill::RateControl);
}

void CDlgParameter::m_S_OnWithFps()
{
    if (!vm_pWithFps->isEnabled())
        return;
    vm_stLow.pFps->setEnabled(!vm_pWithFps->isChecked());
    m_S_OnFps();
}

void CDlgParameter::m_S_OnLowRateControl()
{
    if (!vm_stLow.pRateControl->isEnabled())
        return;
    s_S_EnableByRateControl(vm_stLow);
    m_S_ShowBitrate(vm_stLow, emDef_Fill::RateControl);
}

void CDlgParameter::m_S_OnEnableAudio()
{
    if (!vm_pEnableAudio->isEnabled())
        return;
    const bool bAudio = vm_pEnableAudio->isChecked();
    for (QWidget* const pWidget : std::initializer_list<QWidget*>{vm_pAudioCodec, vm_pAudioRecord, vm_pInputGain,
                                                                  vm_pOutputGain, vm_pTwoWayAudio}) {
        if (pWidget)
            pWidget->setEnabled(bAudio);
    }
    for (QCheckBox* const pBox : {vm_pAudioRecord, vm_pTwoWayAudio}) {
        if (pBox && !bAudio)
            pBox->setChecked(false);
    }
}

// ---- OK ----

// As it stands, and meant to: the rate of the low stream goes to "LowBitrate", where its bit rate takes its place if
// the page has one, and "LowFPS" is never written. A bit rate out of range ends it with the keys before it written.
bool CDlgParameter::OnApply()
{
    if (!m_F_b_Ready())
        return false;
    m_S_WriteEntry();
    m_S_WriteList(vm_stMain.pszFps, vm_stMain.pFps, vm_stMain.pFpsSource);
    m_S_WriteList("Protocol", vm_pProtocol);
    m_S_WriteList(vm_stMain.pszRateControl, vm_stMain.pRateControl);
    m_S_WriteList(vm_stMain.pszQuality, vm_stMain.pQuality, vm_stMain.pQualitySource);
    if (!m_F_b_WriteBitrate(vm_stMain))
        return false;
    m_S_WriteCheck("WithFPS", vm_pWithFps);
    m_S_WriteList(vm_stLow.pszBitrate, vm_stLow.pFps, vm_stLow.pFpsSource);
    m_S_WriteList(vm_stLow.pszRateControl, vm_stLow.pRateControl);
    m_S_WriteList(vm_stLow.pszQuality, vm_stLow.pQuality, vm_stLow.pQualitySource);
    if (!m_F_b_WriteBitrate(vm_stLow))
        return false;
    m_S_WriteAudio();
    return true;
}

void CDlgParameter::m_S_WriteEntry()
{
    const int nEntry = vm_pProfile->currentIndex();
    if (nEntry < 0)
        return;
    for (const stDef_EntryKey& stKey : vm_stBrand.arEntryKeys)
        m_S_Write(stKey.pszKey, stKey.pszFrom ? vm_objAbilities.m_F_s_Text(CAbilities::s_F_s_Entry(nEntry),
                                                                           QString::fromLatin1(stKey.pszFrom))
                                              : QString::number(nEntry));
}

void CDlgParameter::m_S_WriteList(const char* pszKey, const QComboBox* pList, const stDef_ListSource* pSource)
{
    if (pList)
        m_S_Write(pszKey, QString::number(pSource ? lists::Value(*pList, *pSource) : lists::Data(*pList)));
}

void CDlgParameter::m_S_WriteCheck(const char* pszKey, const QCheckBox* pBox)
{
    if (pBox)
        m_S_Write(pszKey, pBox->isChecked() ? u"1"_s : u"0"_s);
}

bool CDlgParameter::m_F_b_WriteBitrate(const stDef_Stream& stStream)
{
    QLineEdit* const pEdit = stStream.pBitrate;
    // Nothing is set where the rate control has no bit rate to offer.
    if (!pEdit || (!pEdit->isEnabled() && pEdit->text().isEmpty()))
        return true;
    const int nBitrate = CXmlObj::s_F_n_ToInt(pEdit->text());
    const auto [nMin, nMax] = m_F_o_BitrateLimits(stStream);
    const bool bLoose = vm_stBrand.bZeroIsNoLimit;
    if ((nBitrate < nMin && !(bLoose && nMin == 0)) || (nBitrate > nMax && !(bLoose && nMax == 0))) {
        m_S_TellRange(pEdit, nMin, nMax);
        return false;
    }
    m_S_Write(stStream.pszBitrate, pEdit->text());
    return true;
}

void CDlgParameter::m_S_TellRange(QLineEdit* pEdit, int nMin, int nMax)
{
    nsWrongMark::Set(pEdit);
    const QString sRange = u"%1 ~ %2"_s.arg(nMin).arg(nMax);
    const QString sText = m_F_s_Text(OverText);
    CPrompts::s_S_Message(this, vm_stBrand.bZeroIsNoLimit ? sText + u" (%1)"_s.arg(sRange) : sText,
                          m_F_s_Text(ErrorText));
    pEdit->setFocus();
    pEdit->selectAll();
    m_S_Tell(m_F_s_Line(RangeText, static_cast<QGroupBox*>(pEdit->parentWidget())->title() + u": "_s + sRange));
}

void CDlgParameter::m_S_WriteAudio()
{
    m_S_WriteCheck("EnableAudio", vm_pEnableAudio);
    m_S_WriteCheck("EnableAudio_Record", vm_pAudioRecord);
    m_S_WriteCheck("EnableTwoWayAudio", vm_pTwoWayAudio);
    m_S_WriteList("InputGain", vm_pInputGain, &vm_stBrand.stInputGain);
    m_S_WriteList("OutputGain", vm_pOutputGain, &vm_stBrand.stOutputGain);
    if (vm_pAudioCodec)
        m_S_StoreAudioCodec(*vm_pAudioCodec);
}

/// All that the user can change.
QString CDlgParameter::m_F_s_State() const
{
    QStringList arState;
    for (const QComboBox* const pList : findChildren<QComboBox*>())
        arState.append(QString::number(pList->currentIndex()));
    for (const QCheckBox* const pBox : findChildren<QCheckBox*>())
        arState.append(QString::number(pBox->isChecked()));
    for (const QLineEdit* const pEdit : findChildren<QLineEdit*>())
        arState.append(pEdit->text());
    return arState.join(u'\n');
}
