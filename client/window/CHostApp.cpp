#include "window/CHostApp.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstdio>
#include <optional>

#include "fleetlink/fleetlink.h"
#include "recorders/CRecorderStore.h"
#include "window/CMainWindow.h"
#include "window/CSingleHost.h"

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
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral(LANG_FROM_BIN));
}

struct stDef_Parser
{
    QCommandLineParser objParser;
    QCommandLineOption objConfig{u"config"_s, u"Configuration folder."_s, u"DIR"_s, DefaultConfigFolder()};
    QCommandLineOption objImport{u"import"_s, u"Take the recorders of a card into the list."_s, u"FILE"_s};
    QCommandLineOption objImportOnly{u"import-only"_s, u"End when the cards are in the list."_s};
    QCommandLineOption objLang{u"lang-dir"_s, u"Folder of the language files."_s, u"DIR"_s, DefaultLangFolder()};
    QCommandLineOption objHelp{{u"h"_s, u"help"_s}, u"Show this help and end."_s};
    QCommandLineOption objVersion{{u"v"_s, u"version"_s}, u"Show the version and end."_s};

    stDef_Parser()
    {
        objParser.setApplicationDescription(u"Live pictures and documents of network video recorders."_s);
        objParser.addOptions({objHelp, objVersion, objConfig, objImport, objImportOnly, objLang});
    }
};

// What is wrong with the arguments; nothing if it is empty and the options are filled in.
QString ParseOptions(const QStringList& arArguments, stDef_HostOptions& stOptions)
{
    stDef_Parser st;
    QCommandLineParser& objParser = st.objParser;
    if (!objParser.parse(arArguments))
        return objParser.errorText();
    if (!objParser.positionalArguments().isEmpty())
        return u"there are no arguments but options"_s;
    stOptions = {objParser.value(st.objConfig), objParser.value(st.objLang), objParser.values(st.objImport),
                 objParser.isSet(st.objImportOnly)};
    return {};
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

// Leaves to the host that has the folder what this one was started for, or ends if it needs a window of its own. Empty
// if the folder is ours.
std::optional<int> HandOver(CSingleHost& objSingle, const stDef_HostOptions& stOptions, bool bAlone)
{
    stDef_HostWish stWish{{}, !stOptions.bImportOnly};
    for (const QString& sFile : stOptions.arImports)
        stWish.arImports.append(QFileInfo(sFile).absoluteFilePath());
    stDef_HostAnswer stAnswer;
    const auto nPlace =
        bAlone ? (objSingle.m_F_b_Take() ? CSingleHost::emDef_Place::First : CSingleHost::emDef_Place::NoAnswer)
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

} // namespace

bool CHostApp::s_F_b_Inform(const QStringList& arArguments)
{
    stDef_Parser st;
    st.objParser.parse(arArguments); // what else is wrong is told where the program would run
    const bool bVersion = st.objParser.isSet(st.objVersion);
    if (!bVersion && !st.objParser.isSet(st.objHelp))
        return false;
    Print(stdout, bVersion ? u"zentrix-cms %1\n"_s.arg(QStringLiteral(FLEETLINK_VERSION)) : st.objParser.helpText());
    return true;
}

int CHostApp::s_F_n_Run(const QStringList& arArguments, const RunWindow& fnRun)
{
    stDef_HostOptions stOptions;
    QString sError = ParseOptions(arArguments, stOptions);
    if (!sError.isEmpty())
        return Complain(sError);
    CSingleHost objSingle(stOptions.sConfigFolder);
    if (const std::optional<int> nElsewhere = HandOver(objSingle, stOptions, fnRun != nullptr))
        return *nElsewhere;
    CEnvObj::s_F_n_RemoveStaleShm();
    CRecorderStore objStore(&CAppEnv::s_objEnv);
    if (!SetUp(stOptions, objStore, sError))
        return Complain(sError);
    if (stOptions.bImportOnly)
        return ExitOk;

    // Open windows, the streams and the shared memory end as by a quit; nobody is asked.
    const CEndRequest objEnd([] {
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::exit(ExitOk); }, Qt::QueuedConnection);
    });
    CMainWindow objWindow(&CAppEnv::s_objEnv, &objStore);
    CAppEnv::s_objEnv.m_F_p_GetShmSystem(true)->hMainWnd = static_cast<std::uint64_t>(objWindow.winId());
    objSingle.m_S_Serve([&](const stDef_HostWish& stWish) { return Serve(stWish, objStore, objWindow); });
    if (fnRun)
        return fnRun(objWindow, objStore);
    objWindow.show();
    return QApplication::exec();
}
