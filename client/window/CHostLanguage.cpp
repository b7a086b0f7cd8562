#include "window/CHostLanguage.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QWidget>
#include <iterator>

#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

namespace {

struct stDef_LanguageRow
{
    const char* pszFile;
    const char* pszLibraryFile;
    const char* pszQt; // translation of Qt's own texts; null: as they stand
};

// By the language index of the environment.
constexpr stDef_LanguageRow g_astLanguages[] = {
    {"lang_HOST_cht.xml", "lang_ENVR_cht.xml", "qtbase_zh_TW"},
    {"lang_HOST_eng.xml", "lang_ENVR_eng.xml", nullptr},
};

} // namespace

CHostLanguage::CHostLanguage(CEnvObj* pEnv) : vm_pEnv(pEnv)
{
    CUserSide::s_S_SetTexts(this);
}

CHostLanguage::~CHostLanguage()
{
    CUserSide::s_S_SetTexts(nullptr);
}

int CHostLanguage::m_F_n_Language() const
{
    return vm_pEnv->vm_nLanguage;
}

int CHostLanguage::m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const
{
    return vm_pEnv->m_F_n_LoadString(sKey, sOut, sDefault);
}

bool CHostLanguage::m_F_b_Set(int nLanguage)
{
    if (nLanguage < 0 || nLanguage >= int(std::size(g_astLanguages)))
        return false;
    const stDef_LanguageRow& stRow = g_astLanguages[nLanguage];
    const QString sFile = QDir(vm_pEnv->m_F_s_GetLangFolder()).filePath(QString::fromLatin1(stRow.pszFile));
    // A damaged file would leave the environment without texts: it is tried aside first.
    if (!CLangXMLObj().m_F_b_LoadXMLFile(sFile) || !vm_pEnv->m_F_b_LoadHostLanguage(sFile))
        return false;
    vm_pEnv->vm_nLanguage = nLanguage;
    QCoreApplication::removeTranslator(&vm_objQt);
    if (stRow.pszQt &&
        vm_objQt.load(QString::fromLatin1(stRow.pszQt), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&vm_objQt);
    // Qt tells only of its own translators, and only where there is one.
    for (QWidget* const pWidget : QApplication::topLevelWidgets())
        QCoreApplication::postEvent(pWidget, new QEvent(QEvent::LanguageChange));
    return true;
}

QStringList CHostLanguage::s_F_ar_Faulty(const QString& sFolder)
{
    QStringList arFaulty;
    for (const stDef_LanguageRow& stRow : g_astLanguages) {
        for (const char* const pszFile : {stRow.pszFile, stRow.pszLibraryFile}) {
            const QString sFile = QDir(sFolder).filePath(QString::fromLatin1(pszFile));
            if (!CLangXMLObj().m_F_b_LoadXMLFile(sFile))
                arFaulty.append(sFile);
        }
    }
    return arFaulty;
}
