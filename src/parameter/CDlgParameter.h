#pragma once

#include "drivers/CAbilities.h"
#include "host/Lib_Bedrock.h"
#include "parameter/stDef_ParameterBrand.h"
#include "toolkit/sheet/CSettingPage.h"

class CCamObj_Base;
class CEnvObj;
class CFormGroup;
class CWndNvrShared;
class QCheckBox;
class QComboBox;
class QLineEdit;

/// The parameter page of a camera: what it can do, as the recorder tells it, together with what its node in the Camera
/// document holds. Opening asks the recorder, which takes up to 60 s; OK writes the node. A page that could not be
/// filled is disabled, says why, and its OK answers false. GUI thread only.
class CDlgParameter : public CSettingPage
{
    Q_OBJECT

public:
    /// Writes what is shown into the camera's node. False if the page is not filled, or a bit rate is out of range;
    /// what was written before that was found stays written.
    bool OnApply() override;
    /// Whether the page shows something else than when it was opened.
    bool m_F_b_Changed() const { return vm_sOpened != m_F_s_State(); }

protected:
    /// The main stream, or the low one.
    struct stDef_Stream
    {
        const stDef_ListSource* pFpsSource;
        const stDef_ListSource* pQualitySource;
        const char *pszFps, *pszRateControl, *pszQuality, *pszBitrate; ///< keys of the camera's node
        QComboBox* pFps = nullptr;                                     ///< these are null where the page has none
        QComboBox* pRateControl = nullptr;
        QComboBox* pQuality = nullptr;
        QLineEdit* pBitrate = nullptr;
    };
    /// On what occasion a bit rate is shown.
    enum class emDef_Fill
    {
        Opening,
        Profile,
        RateControl
    };

    /// The row and the camera, whose connection is one with documents, are borrowed and outlive the page.
    CDlgParameter(const stDef_ParameterBrand& stBrand, CCamObj_Base* pCamObj);

    /// Text of a bit rate's edit.
    virtual QString m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const;
    /// The list of audio encoders, for pages that have one; filling it tells whether there are any.
    virtual QComboBox* m_F_p_MakeAudioCodec(CFormGroup& /*grp*/) { return nullptr; }
    virtual bool m_F_b_FillAudioCodec(QComboBox& /*objList*/) { return true; }
    virtual void m_S_StoreAudioCodec(const QComboBox& /*objList*/) {}

    const stDef_ParameterBrand& m_F_o_Brand() const { return vm_stBrand; }
    const CAbilities& m_F_o_Abilities() const { return vm_objAbilities; }
    bool m_F_b_IsMain(const stDef_Stream& stStream) const { return &stStream == &vm_stMain; }
    /// Path of the entry that stands for the stream.
    QString m_F_s_EntryOf(const stDef_Stream& stStream) const;
    /// The limits that OK checks.
    CAbilities::stDef_Limits m_F_o_BitrateLimits(const stDef_Stream& stStream) const;
    QString m_F_s_NodeText(const char* pszKey) const;
    int m_F_n_NodeNumber(const char* pszKey, int nDefault = 0) const;
    void m_S_Write(const char* pszKey, const QString& sValue);

    CCamObj_Base* m_pCamObj; ///< not owned
    CWndNvrShared* m_pNvr;   ///< not owned
    CEnvObj* m_pEnv;         ///< not owned
    int m_nLowEntry = -1;
    CXmlObj m_xmlSupport; ///< the recorder's reply

private:
    void m_S_Make(CForm& objForm) override;
    void m_S_Loaded() override;
    void m_S_Opened() override;

    void m_S_MakeMain(CForm& objForm);
    void m_S_MakeLow(CForm& objForm);
    void m_S_MakeAudio(CForm& objForm);
    QComboBox* m_F_p_List(CFormGroup& grp, const Text& stLabel, const char* pszName);
    QLineEdit* m_F_p_Bitrate(CFormGroup& grp, const char* pszName);
    void m_S_Connect();

    bool m_F_b_Ready() const;
    void m_S_FillProfiles();
    void m_S_FillProtocol();
    void m_S_FillRateControls();
    void m_S_FillAudio();

    CAbilities::stDef_Limits m_F_o_Limits(const stDef_LimitsAt& stAt) const;
    /// Fills a list, if there is one, and chooses a value in it.
    void m_S_FillList(QComboBox* pList, const stDef_ListSource& stSource, int nValue);
    void m_S_FillFps(const stDef_Stream& stStream);
    void m_S_FillQuality(const stDef_Stream& stStream);
    void m_S_FillGain(QComboBox* pList, const stDef_ListSource& stSource, const char* pszKey);
    void m_S_Choose(QComboBox* pList, const stDef_ListSource& stSource, int nValue) const;
    void m_S_ShowLowFps();
    void m_S_ShowRateControl(const stDef_Stream& stStream);
    void m_S_ShowBitrate(const stDef_Stream& stStream, emDef_Fill nFill);
    void m_S_ShowRanges();
    void m_S_EnableLowStream();
    static void s_S_EnableByRateControl(const stDef_Stream& stStream);

    void m_S_OnProfile();
    void m_S_OnFps();
    void m_S_OnRateControl();
    void m_S_OnWithFps();
    void m_S_OnLowRateControl();
    void m_S_OnEnableAudio();

    void m_S_WriteEntry();
    void m_S_WriteList(const char* pszKey, const QComboBox* pList, const stDef_ListSource* pSource = nullptr);
    void m_S_WriteCheck(const char* pszKey, const QCheckBox* pBox);
    /// Checks a bit rate and writes it; false, and the user was told, if it is out of range.
    bool m_F_b_WriteBitrate(const stDef_Stream& stStream);
    void m_S_TellRange(QLineEdit* pEdit, int nMin, int nMax);
    void m_S_WriteAudio();

    QString m_F_s_State() const;

    const stDef_ParameterBrand& vm_stBrand;
    CAbilities vm_objAbilities;
    int vm_nEntry = 0; ///< chosen entry; one past the list while none is
    QString vm_sBitrateWord, vm_sOpened;
    stDef_Stream vm_stMain, vm_stLow;
    QComboBox* vm_pProfile = nullptr;
    QComboBox* vm_pProtocol = nullptr;
    QCheckBox* vm_pWithFps = nullptr;
    QCheckBox* vm_pEnableAudio = nullptr;
    QComboBox* vm_pAudioCodec = nullptr;
    QCheckBox* vm_pAudioRecord = nullptr;
    QComboBox* vm_pInputGain = nullptr;
    QComboBox* vm_pOutputGain = nullptr;
    QCheckBox* vm_pTwoWayAudio = nullptr;
};
