#include "CHostApp.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstdio>
#include <optional>

#include "CHostText.h"
#include "CMainWindow.h"
#include "CRecorderStore.h"
#include "CSingleHost.h"
#include "CTour.h"

using namespace Qt::StringLiterals;

namespace {

void Print(std::FILE* pStream, const QString& sText)
{
    std::fputs(sText.toLocal8Bit().constData(), pStream);
    std::fflush(pStream);
}

int Complain(const QString& sText)
{
    Print(stderr, u"zentrix-cms: %1\n"_s.arg(sText));
    return CHostApp::ExitSetup;
}

QString DefaultConfigFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)).filePath(u"zentrix-cms"_s);
}

// Where an installed host has its language files.
QString DefaultLangFolder()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(u"../share/fleetlink/lang"_s);
}

// Fills the options. Returns false if the program ends here, with the exit code set.
bool ParseOptions(const QStringList& arArguments, stDef_HostOptions& stOptions, int& nExit)
{
    QCommandLineParser objParser;
    objParser.setApplicationDescription(u"Live pictures and documents of network video recorders."_s);
    const QCommandLineOption objConfig(u"config"_s, u"Configuration folder."_s, u"DIR"_s, DefaultConfigFolder());
    const QCommandLineOption objImport(u"import"_s, u"Take the recorders of a card into the list."_s, u"FILE"_s);
    const QCommandLineOption objImportOnly(u"import-only"_s, u"End when the cards are in the list."_s);
    const QCommandLineOption objLang(u"lang-dir"_s, u"Folder of the language files."_s, u"DIR"_s, DefaultLangFolder());
    const QCommandLineOption objTour(u"tour"_s, u"Show all states by itself; pictures and a table go to DIR."_s,
                                     u"DIR"_s);
    const QCommandLineOption objHelp = objParser.addHelpOption();
    objParser.addOptions({objConfig, objImport, objImportOnly, objLang, objTour});
    if (!objParser.parse(arArguments) || !objParser.positionalArguments().isEmpty()) {
        const QString sError = objParser.errorText();
        nExit = Complain(sError.isEmpty() ? u"there are no arguments but options"_s : sError);
        return false;
    }
    if (objParser.isSet(objHelp)) {
        Print(stdout, objParser.helpText());
        nExit = CHostApp::ExitOk;
        return false;
    }
    stOptions = {objParser.value(objConfig), objParser.value(objLang), objParser.values(objImport),
                 objParser.value(objTour), objParser.isSet(objImportOnly)};
    return true;
}

bool SetUp(const stDef_HostOptions& stOptions, CRecorderStore& objStore, QString& sError)
{
    CEnvObj& objEnv = CAppEnv::s_objEnv;
    if (!objEnv.m_F_b_Init(stOptions.sConfigFolder)) {
        sError = u"the folder %1 can't be used"_s.arg(stOptions.sConfigFolder);
        return false;
    }
    if (!objEnv.m_F_b_SetLangFolder(stOptions.sLangFolder)) {
        sError = u"the name of the language folder is too long"_s;
        return false;
    }
    for (const QString& sFile : stOptions.arImports) {
        const stDef_ImportResult stResult = objStore.m_F_o_Import(sFile);
        sError = stResult.sError;
        if (!sError.isEmpty())
            return false;
        Print(stdout, stResult.m_F_s_Text() + u'\n');
    }
    return true;
}

// Leaves to the host that has the folder what this one was started for. Empty if the folder is ours.
std::optional<int> HandOver(CSingleHost& objSingle, const stDef_HostOptions& stOptions)
{
    stDef_HostWish stWish{{}, !stOptions.bImportOnly};
    for (const QString& sFile : stOptions.arImports)
        stWish.arImports.append(QFileInfo(sFile).absoluteFilePath());
    stDef_HostAnswer stAnswer;
    const bool bTour = !stOptions.sTourFolder.isEmpty(); // it needs a window of its own
    const auto nPlace =
        bTour ? (objSingle.m_F_b_Take() ? CSingleHost::emDef_Place::First : CSingleHost::emDef_Place::NoAnswer)
              : objSingle.m_F_n_Enter(stWish, stAnswer);
    if (nPlace == CSingleHost::emDef_Place::First)
        return {};
    if (nPlace == CSingleHost::emDef_Place::NoAnswer)
        return Complain(u"another host uses the folder %1"_s.arg(stOptions.sConfigFolder));
    Print(stdout, stAnswer.sOut);
    return stAnswer.sError.isEmpty() ? CHostApp::ExitOk : Complain(stAnswer.sError);
}

// Does what a host wishes that was started later on the same folder.
stDef_HostAnswer Serve(const stDef_HostWish& stWish, CRecorderStore& objStore, CMainWindow& objWindow)
{
    stDef_HostAnswer stAnswer;
    for (const QString& sFile : stWish.arImports) {
        const stDef_ImportResult stResult = objStore.m_F_o_Import(sFile);
        objWindow.m_S_ShowImported(stResult);
        stAnswer.sError = stResult.sError;
        if (!stAnswer.sError.isEmpty())
            break;
        stAnswer.sOut += stResult.m_F_s_Text() + u'\n';
    }
    if (!stWish.bShow)
        return stAnswer;
    objWindow.setWindowState(objWindow.windowState() & ~Qt::WindowMinimized);
    objWindow.show();
    objWindow.raise();
    objWindow.activateWindow();
    return stAnswer;
}

int RunTour(CMainWindow& objWindow, CRecorderStore& objStore, const QString& sFolder)
{
    objWindow.m_S_SetPictureFolder(sFolder);
    CTour objTour(&objWindow, &objStore, sFolder);
    const QStringList arFailures = objTour.m_F_ar_Run();
    Print(stdout, objTour.m_F_s_Report());
    for (const QString& sFailure : arFailures)
        Print(stderr, u"zentrix-cms: %1\n"_s.arg(sFailure));
    return arFailures.isEmpty() ? CHostApp::ExitOk : CHostApp::ExitTourFailed;
}

} // namespace

int CHostApp::s_F_n_Run(const QStringList& arArguments)
{
    stDef_HostOptions stOptions;
    int nExit = ExitOk;
    if (!ParseOptions(arArguments, stOptions, nExit))
        return nExit;
    CSingleHost objSingle(stOptions.sConfigFolder);
    if (const std::optional<int> nElsewhere = HandOver(objSingle, stOptions))
        return *nElsewhere;
    CEnvObj::s_F_n_RemoveStaleShm();
    CRecorderStore objStore(&CAppEnv::s_objEnv);
    QString sError;
    if (!SetUp(stOptions, objStore, sError))
        return Complain(sError);
    if (stOptions.bImportOnly)
        return ExitOk;

    CMainWindow objWindow(&CAppEnv::s_objEnv, &objStore);
    CAppEnv::s_objEnv.m_F_p_GetShmSystem(true)->hMainWnd = static_cast<std::uint64_t>(objWindow.winId());
    objSingle.m_S_Serve([&](const stDef_HostWish& stWish) { return Serve(stWish, objStore, objWindow); });
    if (!stOptions.sTourFolder.isEmpty())
        return RunTour(objWindow, objStore, stOptions.sTourFolder);
    objWindow.show();
    return QApplication::exec();
}
