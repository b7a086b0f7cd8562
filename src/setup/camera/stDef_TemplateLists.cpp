#include "setup/camera/stDef_TemplateLists.h"

#include <QComboBox>

#include "drivers/stDef_CameraTemplate.h"
#include "toolkit/form/CFormGroup.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int RateStep = 5;
constexpr int HighestRate = 30;

} // namespace

stDef_TemplateLists stDef_TemplateLists::s_F_o_Make(CFormGroup& grp)
{
    QList<stDef_ListItem> arRates = {{u"MAX"_s, 0}};
    for (int nRate = RateStep; nRate <= HighestRate; nRate += RateStep)
        arRates.append({QString::number(nRate), nRate});
    QStringList arResolutions;
    for (const stDef_TemplateResolution& stRow : stDef_CameraTemplate::s_F_ar_Resolutions())
        arResolutions.append(QString::fromLatin1(stRow.pszText));
    stDef_TemplateLists st;
    st.pResolution = grp.m_F_p_List(Text{"Resolution", "Resolution"}, "Resolution", arResolutions);
    st.pFps = grp.m_F_p_List(Text{"FPS", "FPS"}, "FPS", arRates);
    return st;
}

void stDef_TemplateLists::m_S_Show(const stDef_CameraTemplate& stTemplate) const
{
    pResolution->setCurrentIndex(stTemplate.nResolution);
    pFps->setCurrentIndex(stTemplate.nFPS / RateStep);
}
