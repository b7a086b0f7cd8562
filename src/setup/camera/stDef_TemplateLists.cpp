#include "setup/camera/stDef_TemplateLists.h"

#include <QComboBox>

#include "toolkit/form/CFormGroup.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int RateStep = 5;
constexpr int HighestRate = 30;

struct AsRate
{
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        objList.setCurrentIndex(sValue.toInt() / RateStep);
    }
    static QString s_F_s_Stored(const QComboBox& objList) { return nsForms::ByData::s_F_s_Stored(objList); }
};

} // namespace

stDef_TemplateLists stDef_TemplateLists::s_F_o_Make(CFormGroup& grp, CMemberForm<stDef_CameraTemplate>& objForm)
{
    QList<stDef_ListItem> arResolutions;
    for (const stDef_TemplateResolution& stRow : stDef_CameraTemplate::s_F_ar_Resolutions())
        arResolutions.append({QString::fromLatin1(stRow.pszText), static_cast<int>(arResolutions.size())});
    QList<stDef_ListItem> arRates = {{u"MAX"_s, 0}};
    for (int nRate = RateStep; nRate <= HighestRate; nRate += RateStep)
        arRates.append({QString::number(nRate), nRate});
    return {
        objForm.m_F_p_Bind<nsForms::ByData>(
            &stDef_CameraTemplate::nResolution,
            grp.m_F_p_List(Text{"Resolution", "Resolution"}, "Resolution", arResolutions)),
        objForm.m_F_p_Bind<AsRate>(&stDef_CameraTemplate::nFPS, grp.m_F_p_List(Text{"FPS", "FPS"}, "FPS", arRates))};
}
