#include "CHostText.h"

#include <iterator>

#include "host/Lib_Hostenv.h"

namespace {

struct stDef_TextRow
{
    emDef_Text nText;
    const char* pszKey;
    const char* pszEnglish;
};

constexpr stDef_TextRow g_astTexts[] = {
    {emDef_Text::AppTitle, "AppTitle", "Zentrix CMS"},
    {emDef_Text::MenuFile, "MenuFile", "&File"},
    {emDef_Text::MenuView, "MenuView", "&View"},
    {emDef_Text::MenuRecorder, "MenuRecorder", "&Recorder"},
    {emDef_Text::MenuHelp, "MenuHelp", "&Help"},
    {emDef_Text::Quit, "Quit", "&Quit"},
    {emDef_Text::QuitTip, "QuitTip", "End all streams and close the window"},
    {emDef_Text::FullScreen, "FullScreen", "&Full screen"},
    {emDef_Text::FullScreenTip, "FullScreenTip", "Show nothing but the live pictures"},
    {emDef_Text::ConnectAll, "ConnectAll", "&Connect all"},
    {emDef_Text::ConnectAllTip, "ConnectAllTip", "Connect every channel of the grid"},
    {emDef_Text::DisconnectAll, "DisconnectAll", "&Disconnect all"},
    {emDef_Text::DisconnectAllTip, "DisconnectAllTip", "End every stream of the grid"},
    {emDef_Text::Exchange, "Exchange", "&Exchange documents"},
    {emDef_Text::ExchangeTip, "ExchangeTip", "Fetch the recorder's documents and post its settings back unchanged"},
    {emDef_Text::About, "About", "&About"},
    {emDef_Text::AboutTip, "AboutTip", "What this program is"},
    {emDef_Text::AboutBody, "AboutBody",
     "A sample host of the Fleetlink library. It shows the live pictures of a recorder and exchanges its documents."},
    {emDef_Text::Toolbar, "Toolbar", "Commands"},
    {emDef_Text::Recorders, "Recorders", "Recorders"},
    {emDef_Text::NoRecorders, "NoRecorders", "No recorder yet. Import a recorder card with --import FILE."},
    {emDef_Text::LiveGrid, "LiveGrid", "Live pictures"},
    {emDef_Text::Channel, "Channel", "Channel %2 \u2013 %1"},
    {emDef_Text::EmptyCell, "EmptyCell", "Empty"},
    {emDef_Text::EmptyCellHint, "EmptyCellHint", "No channel is shown here"},
    {emDef_Text::Documents, "Documents", "Documents"},
    {emDef_Text::ColumnDocument, "ColumnDocument", "Document"},
    {emDef_Text::ColumnFetched, "ColumnFetched", "Fetched"},
    {emDef_Text::ColumnFetchTime, "ColumnFetchTime", "Fetch time"},
    {emDef_Text::ColumnPosted, "ColumnPosted", "Posted"},
    {emDef_Text::ColumnPostTime, "ColumnPostTime", "Post time"},
    {emDef_Text::ColumnResult, "ColumnResult", "Result"},
    {emDef_Text::ResultOk, "ResultOk", "Fetched and posted"},
    {emDef_Text::ResultFetchFailed, "ResultFetchFailed", "Fetch failed"},
    {emDef_Text::ResultPostFailed, "ResultPostFailed", "Post failed"},
    {emDef_Text::ResultReadOnly, "ResultReadOnly", "Fetched"},
    {emDef_Text::ExchangeIdle, "ExchangeIdle", "No documents exchanged yet"},
    {emDef_Text::ExchangeDone, "ExchangeDone", "Documents of %1 exchanged in %2 ms"},
    {emDef_Text::ExchangeFailed, "ExchangeFailed", "Documents of %1: %2 of %3 failed"},
    {emDef_Text::ExchangeNoRecorder, "ExchangeNoRecorder", "Pick a recorder first"},
    {emDef_Text::Bytes, "Bytes", "%1 B"},
    {emDef_Text::Milliseconds, "Milliseconds", "%1 ms"},
    {emDef_Text::StateIdle, "StateIdle", "Not connected"},
    {emDef_Text::StateConnecting, "StateConnecting", "Connecting"},
    {emDef_Text::StateWaiting, "StateWaiting", "Connected"},
    {emDef_Text::StateLive, "StateLive", "Live"},
    {emDef_Text::StateDisconnecting, "StateDisconnecting", "Disconnecting"},
    {emDef_Text::StateDisconnected, "StateDisconnected", "Disconnected"},
    {emDef_Text::StateLost, "StateLost", "Connection lost"},
    {emDef_Text::StateNoAnswer, "StateNoAnswer", "No answer"},
    {emDef_Text::StateRefused, "StateRefused", "Refused"},
    {emDef_Text::StateUnusable, "StateUnusable", "Not usable"},
    {emDef_Text::HintIdle, "HintIdle", "Connect all begins the stream"},
    {emDef_Text::HintConnecting, "HintConnecting", "Waiting for the recorder to answer"},
    {emDef_Text::HintWaiting, "HintWaiting", "Waiting for the next picture"},
    {emDef_Text::HintDisconnected, "HintDisconnected", "The stream was ended here"},
    {emDef_Text::HintLost, "HintLost", "The recorder ended the stream or fell silent"},
    {emDef_Text::HintNoAnswer, "HintNoAnswer", "Nothing answers at the recorder's address"},
    {emDef_Text::HintRefused, "HintRefused", "Wrong account, or no such channel"},
    {emDef_Text::HintUnusable, "HintUnusable", "Address or account of this recorder can't be used"},
    {emDef_Text::FramesPerSecond, "FramesPerSecond", "%1 frames/s"},
    {emDef_Text::RecorderLive, "RecorderLive", "%1 of %2 live"},
    {emDef_Text::TotalRecorders, "TotalRecorders", "Recorders: %1"},
    {emDef_Text::TotalLive, "TotalLive", "Live: %1 of %2"},
    {emDef_Text::TotalFrames, "TotalFrames", "%1 frames/s"},
    {emDef_Text::Imported, "Imported", "Recorders added: %1, updated: %2"},
};

constexpr bool RowsInOrder()
{
    for (std::size_t i = 0; i < std::size(g_astTexts); ++i) {
        if (static_cast<std::size_t>(g_astTexts[i].nText) != i)
            return false;
    }
    return std::size(g_astTexts) == static_cast<std::size_t>(emDef_Text::Count);
}

static_assert(RowsInOrder(), "one row a text, in the order of the enumeration");

} // namespace

QString CHostText::s_F_s_Get(emDef_Text nText)
{
    const stDef_TextRow& stRow = g_astTexts[static_cast<std::size_t>(nText)];
    QString sText;
    CAppEnv::s_objEnv.m_F_n_LoadString(QString::fromLatin1(stRow.pszKey), sText, QString::fromUtf8(stRow.pszEnglish));
    return sText;
}

QString CHostText::s_F_s_Key(emDef_Text nText)
{
    return QString::fromLatin1(g_astTexts[static_cast<std::size_t>(nText)].pszKey);
}
