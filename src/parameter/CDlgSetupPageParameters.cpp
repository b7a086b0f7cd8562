#include "parameter/CDlgSetupPageParameters.h"

#include <QLayout>
#include <QScreen>

#include "drivers/brands/Drivers.h"

using namespace Qt::StringLiterals;

CDlgSetupPageParameter::CDlgSetupPageParameter(CCamObj_Base* pCamObj, CDlgParameter* pPage)
    : CSettingSheet(pCamObj->m_pNvr, u"Camera Parameter"_s, Text{"Parameter", "Parameter"}, pCamObj->m_pNvr),
      m_pNvr(pCamObj->m_pNvr),
      m_pEnv(pCamObj->m_pEnv),
      m_pPage(pPage)
{
    setObjectName(u"Parameter"_s);
    m_S_AddTab(Text{"Base", "Base"}, pPage);
}

// The page asks the recorder, and the host can release the connection meanwhile.
int CDlgSetupPageParameter::OnInitDialog()
{
    CSettingSheet::OnInitDialog();
    return m_pNvr->m_F_b_Released() ? 0 : 1;
}

QSize CDlgSetupPageParameter::sizeHint() const
{
    const QWidget* const pScroll = m_pPage->parentWidget()->parentWidget();               // by its viewport
    const QSize szFrame = layout()->sizeHint() - pScroll->sizeHint();                     // tabs, buttons, margins
    const QSize szRest(8 * fontMetrics().averageCharWidth(), 2 * fontMetrics().height()); // wider ranges, a note
    const QSize szWanted = m_pPage->sizeHint() + szFrame + szRest;
    return screen() ? szWanted.boundedTo(screen()->availableSize() * 0.95) : szWanted;
}

// What the drivers declare stands here, beside the windows that it opens.

namespace {

template <class Sheet>
void Run(CCamObj_Base* pCamObj)
{
    if (!pCamObj->m_pNvr)
        return;
    const CNvrUse objUse(pCamObj->m_pNvr);
    Sheet objSheet(pCamObj);
    objSheet.DoModal();
    objSheet.setParent(nullptr); // which may go with this use of it
}

} // namespace

void CCamObj_AMTKV5::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_AMTKV5>(this);
}

void CCamObj_AMTKV6::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_AMTKV6>(this);
}

void CCamObj_DYNACOLOR::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_DYNACOLOR>(this);
}

void CCamObj_FITI::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_FITI>(this);
}

void CCamObj_ONVIF::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_ONVIF>(this);
}

void CCamObj_PIXORD::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_PIXORD>(this);
}

void CCamObj_SMAX::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_SMAX>(this);
}

void CCamObj_ZAVIO::m_S_ShowParameter(QWidget* /*pParent*/)
{
    Run<CDlgSetupPageParameter_ZAVIO>(this);
}
