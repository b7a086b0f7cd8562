#pragma once

#include "core/CWndNvrBase.h"
#include "parameter/CDlgParameters.h"
#include "toolkit/sheet/CSettingSheet.h"

/// The sheet of one camera's parameters, with the brand's page as its only tab.
class CDlgSetupPageParameter : public CSettingSheet
{
    Q_OBJECT

public:
    int OnInitDialog() override;
    /// As large as its page, if the screen has that room.
    QSize sizeHint() const override;

protected:
    /// The page belongs to the sheet from now on. The camera is borrowed and outlives the sheet.
    CDlgSetupPageParameter(CCamObj_Base* pCamObj, CDlgParameter* pPage);
    bool m_F_b_Changed() const override { return m_pPage->m_F_b_Changed(); }

    CWndNvrBase* m_pNvr;    ///< not owned
    CEnvObj* m_pEnv;        ///< not owned
    CDlgParameter* m_pPage; ///< a child
};

/// The sheets of the brands, which differ by their page alone.
template <class Page>
class CDlgSetupPageParameterOf : public CDlgSetupPageParameter
{
public:
    explicit CDlgSetupPageParameterOf(CCamObj_Base* pCamObj) : CDlgSetupPageParameter(pCamObj, new Page(pCamObj)) {}
};
using CDlgSetupPageParameter_AMTKV5 = CDlgSetupPageParameterOf<CDlgParameter_AMTKV5>;
using CDlgSetupPageParameter_AMTKV6 = CDlgSetupPageParameterOf<CDlgParameter_AMTKV6>;
using CDlgSetupPageParameter_DYNACOLOR = CDlgSetupPageParameterOf<CDlgParameter_DYNACOLOR>;
using CDlgSetupPageParameter_FITI = CDlgSetupPageParameterOf<CDlgParameter_FITI>;
using CDlgSetupPageParameter_ONVIF = CDlgSetupPageParameterOf<CDlgParameter_ONVIF>;
using CDlgSetupPageParameter_PIXORD = CDlgSetupPageParameterOf<CDlgParameter_PIXORD>;
using CDlgSetupPageParameter_SMAX = CDlgSetupPageParameterOf<CDlgParameter_SMAX>;
using CDlgSetupPageParameter_ZAVIO = CDlgSetupPageParameterOf<CDlgParameter_ZAVIO>;
