#include "tour/CTourParameters.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct stDef_TourCamera
{
    const char* pszPicture;
    int nCamera;            ///< its place in the list
    int nVendorID = -1;     ///< of one that takes that place
    const char* pszIP = ""; // of such a one, as "Cameras.xml" has it
    const char* pszPort = "";
};

constexpr int OwnBrands = 4; // those of the recorder's own cameras come first
constexpr std::array<stDef_TourCamera, 8> g_astCameras = {{
    {"parameter-amtkv6", 0},
    {"parameter-onvif", 1},
    {"parameter-zavio", 2},
    {"parameter-fiti", 3},
    {"parameter-amtkv5", 0, 0, "192.168.1.21", "80"},
    {"parameter-smax", 0, 7, "169.254.12.7", "80"},
    {"parameter-pixord", 0, 9, "169.254.80.41", "8081"},
    {"parameter-dynacolor", 0, 10, "192.168.1.28", "80"},
}};
constexpr char Account[] = "admin", Password[] = "cam&Era#1";

void PressKey(QWidget* pWidget, int nKey)
{
    QKeyEvent objPress(QEvent::KeyPress, nKey, Qt::NoModifier);
    QApplication::sendEvent(pWidget, &objPress);
}

void Click(QWidget* pPage, const QString& sButton)
{
    if (auto* const pButton = pPage->findChild<QPushButton*>(sButton))
        pButton->click();
}

} // namespace

bool CTourParameters::m_F_b_Step(QWidget* pPage)
{
    if (vm_bBusy)
        return true;
    if (vm_nBrand >= m_F_n_Cameras())
        return false;
    vm_bBusy = true;
    // Not within the caller's timer, which doesn't go off again before it has returned.
    QTimer::singleShot(0, pPage, [this, pPage] {
        m_S_Choose(pPage);
        m_S_Replace(pPage);
        Click(pPage, u"Parameter"_s);
        ++vm_nBrand;
        vm_bBusy = false;
    });
    return true;
}

int CTourParameters::m_F_n_Cameras() const
{
    return vm_bOthers ? static_cast<int>(g_astCameras.size()) : OwnBrands;
}

QStringList CTourParameters::m_F_ar_Pictures() const
{
    QStringList arPictures;
    for (int nCamera = 0; nCamera < m_F_n_Cameras(); ++nCamera)
        arPictures.append(QString::fromLatin1(g_astCameras[static_cast<std::size_t>(nCamera)].pszPicture));
    return arPictures;
}

void CTourParameters::m_S_Choose(QWidget* pPage) const
{
    auto* const pTree = pPage->findChild<QTreeWidget*>();
    if (!pTree)
        return;
    PressKey(pTree, Qt::Key_Home);
    for (int nStep = 0; nStep < g_astCameras[static_cast<std::size_t>(vm_nBrand)].nCamera; ++nStep)
        PressKey(pTree, Qt::Key_Down);
}

void CTourParameters::m_S_Replace(QWidget* pPage) const
{
    const stDef_TourCamera& st = g_astCameras[static_cast<std::size_t>(vm_nBrand)];
    auto* const pVendor = pPage->findChild<QComboBox*>(u"Vendor"_s);
    if (st.nVendorID < 0 || !pVendor)
        return;
    pVendor->setCurrentIndex(pVendor->findData(st.nVendorID));
    for (const auto& [pszEdit, pszText] :
         {std::pair("IP", st.pszIP), {"HttpPort", st.pszPort}, {"UserName", Account}, {"Password", Password}}) {
        if (auto* const pEdit = pPage->findChild<QWidget*>(QString::fromLatin1(pszEdit)))
            pEdit->setProperty("text", QString::fromLatin1(pszText));
    }
    Click(pPage, u"Update"_s);
}

QString CTourParameters::m_F_s_Picture() const
{
    return QString::fromLatin1(g_astCameras[static_cast<std::size_t>(vm_nBrand)].pszPicture);
}

bool CTourParameters::s_F_b_Is(const QDialog* pDialog)
{
    return pDialog->objectName() == u"Parameter";
}
