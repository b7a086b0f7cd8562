#pragma once

#include "parameter/CDlgParameter.h"

// The parameter pages of the brands. Each is a row of what it has; V6 and ONVIF do a little beyond theirs.

/// Shows the bit rate that the camera tells for an entry in place of the node's.
class CDlgParameter_AMTKV5 : public CDlgParameter
{
public:
    explicit CDlgParameter_AMTKV5(CCamObj_Base* pCamObj);

private:
    QString m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const override;
};

/// Shows what the camera tells for each way of rate control, and never the node's bit rates.
class CDlgParameter_AMTKV6 : public CDlgParameter
{
public:
    explicit CDlgParameter_AMTKV6(CCamObj_Base* pCamObj);

private:
    QString m_F_s_BitrateShown(const stDef_Stream& stStream, emDef_Fill nFill) const override;
};

class CDlgParameter_DYNACOLOR : public CDlgParameter
{
public:
    explicit CDlgParameter_DYNACOLOR(CCamObj_Base* pCamObj);
};

class CDlgParameter_FITI : public CDlgParameter
{
public:
    explicit CDlgParameter_FITI(CCamObj_Base* pCamObj);
};

/// Has a list of audio encoders.
class CDlgParameter_ONVIF : public CDlgParameter
{
public:
    explicit CDlgParameter_ONVIF(CCamObj_Base* pCamObj);

private:
    int m_F_n_AudioCodecs() const;
    QComboBox* m_F_p_MakeAudioCodec(CFormGroup& grp) override;
    bool m_F_b_FillAudioCodec(QComboBox& objList) override;
    void m_S_StoreAudioCodec(const QComboBox& objList) override;
};

class CDlgParameter_PIXORD : public CDlgParameter
{
public:
    explicit CDlgParameter_PIXORD(CCamObj_Base* pCamObj);
};

class CDlgParameter_SMAX : public CDlgParameter
{
public:
    explicit CDlgParameter_SMAX(CCamObj_Base* pCamObj);
};

class CDlgParameter_ZAVIO : public CDlgParameter
{
public:
    explicit CDlgParameter_ZAVIO(CCamObj_Base* pCamObj);
};
