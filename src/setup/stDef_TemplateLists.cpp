#include "setup/stDef_TemplateLists.h"

#include <QComboBox>

#include "setup/stDef_CameraTemplate.h"
#include "toolkit/form/CForm.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int RateStep = 5;
constexpr int HighestRate = 30;

} // namespace

stDef_TemplateLists stDef_TemplateLists::s_F_o_Make(CForm& objForm)
{
    stDef_TemplateLists st;
    st.pResolution = objForm.m_F_p_List(Text{"Resolution", "Resolution"}, "Resolution");
    st.pResolution->addItems({u"MAX"_s, u"5M"_s, u"3M"_s, u"2M"_s, u"1.3M"_s, u"VGA"_s});
    st.pFps = objForm.m_F_p_List(Text{"FPS", "FPS"}, "FPS");
    st.pFps->addItem(u"MAX"_s, 0);
    for (int nRate = RateStep; nRate <= HighestRate; nRate += RateStep)
        st.pFps->addItem(QString::number(nRate), nRate);
    return st;
}

void stDef_TemplateLists::m_S_Show(const stDef_CameraTemplate& stTemplate) const
{
    pResolution->setCurrentIndex(stTemplate.nResolution);
    pFps->setCurrentIndex(stTemplate.nFPS / RateStep);
}
