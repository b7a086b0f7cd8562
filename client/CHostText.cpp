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
    {emDef_Text::FaultAddress, "FaultAddress", "Give the recorder's address, such as 192.168.1.10, without a port."},
    {emDef_Text::FaultDips, "FaultDips", "Give the recorder's DIPS id, such as FL-000001."},
    {emDef_Text::FaultUser, "FaultUser", "Give the account to log in with."},
    {emDef_Text::FaultNumber, "FaultNumber", "A number from %1 to %2."},
    {emDef_Text::FaultSave, "FaultSave",
     "The recorder list can't be saved. Is the disk full, or the configuration folder read-only?"},
    {emDef_Text::FaultFull, "FaultFull", "The list is full: it holds 1001 recorders."},
    {emDef_Text::FaultKey, "FaultKey",
     "There is no key to store the password with. Is the configuration folder read-only?"},
    {emDef_Text::FaultGone, "FaultGone", "This recorder is no longer in the list."},
    {emDef_Text::TreeEmpty, "TreeEmpty", "No recorder yet. Press Insert to add the first one."},
    {emDef_Text::TreeNoMatch, "TreeNoMatch", "No recorder fits the filter."},
    {emDef_Text::TreeFilter, "TreeFilter", "Filter recorders"},
    {emDef_Text::TreeFilterTip, "TreeFilterTip",
     "Show only recorders with this text in their name or address (Ctrl+F)"},
    {emDef_Text::TreeChannel, "TreeChannel", "Channel %1"},
    {emDef_Text::TreeChannels, "TreeChannels", "%1 channels"},
    {emDef_Text::ReachUnknown, "ReachUnknown", "Not checked yet"},
    {emDef_Text::ReachThere, "ReachThere", "Reachable"},
    {emDef_Text::ReachSilent, "ReachSilent", "Silent"},
    {emDef_Text::ReachAway, "ReachAway", "Unreachable"},
    {emDef_Text::DialogAdd, "DialogAdd", "Add recorder"},
    {emDef_Text::DialogEdit, "DialogEdit", "Edit recorder"},
    {emDef_Text::FieldName, "FieldName", "&Name:"},
    {emDef_Text::FieldNameHint, "FieldNameHint", "the address, if empty"},
    {emDef_Text::FieldType, "FieldType", "&Kind:"},
    {emDef_Text::TypeEmbedded, "TypeEmbedded", "Embedded recorder"},
    {emDef_Text::TypePC, "TypePC", "PC recorder"},
    {emDef_Text::FieldAddress, "FieldAddress", "&Address:"},
    {emDef_Text::FieldFromDips, "FieldFromDips", "Address comes from &DIPS"},
    {emDef_Text::FieldDips, "FieldDips", "DIPS &id:"},
    {emDef_Text::FieldHttpPort, "FieldHttpPort", "&HTTP port:"},
    {emDef_Text::FieldRtspPort, "FieldRtspPort", "&RTSP port:"},
    {emDef_Text::FieldUser, "FieldUser", "Acco&unt:"},
    {emDef_Text::FieldPassword, "FieldPassword", "&Password:"},
    {emDef_Text::FieldPasswordKept, "FieldPasswordKept", "unchanged, if empty"},
    {emDef_Text::FieldShowPassword, "FieldShowPassword", "&Show password"},
    {emDef_Text::FieldTransport, "FieldTransport", "&Transport:"},
    {emDef_Text::TransportTunnel, "TransportTunnel", "HTTP tunnel"},
    {emDef_Text::TransportTCP, "TransportTCP", "TCP"},
    {emDef_Text::TransportUDP, "TransportUDP", "UDP"},
    {emDef_Text::FieldChannels, "FieldChannels", "&Channels:"},
    {emDef_Text::TestButton, "TestButton", "T&est connection"},
    {emDef_Text::TestStop, "TestStop", "Stop t&est"},
    {emDef_Text::TestTakeChannels, "TestTakeChannels", "Ta&ke over %1 channels"},
    {emDef_Text::TestRunning, "TestRunning", "Asking the recorder..."},
    {emDef_Text::TestStopped, "TestStopped", "The test was stopped."},
    {emDef_Text::TestNoHost, "TestNoHost",
     "There is no host of that name. Check the spelling of the address and the network's name service."},
    {emDef_Text::TestUnreachable, "TestUnreachable",
     "Nobody answers at that address. Check the address, the cable and whether the recorder is switched on."},
    {emDef_Text::TestClosed, "TestClosed",
     "The machine is there, but nothing listens at port %1. Check the HTTP port."},
    {emDef_Text::TestSilent, "TestSilent",
     "Port %1 takes the connection but gives no answer. Check the HTTP port, or restart the recorder."},
    {emDef_Text::TestAccount, "TestAccount", "The recorder refuses the account. Check account and password."},
    {emDef_Text::TestNoRecorder, "TestNoRecorder",
     "Something answers, but it is not a recorder. Check address and HTTP port."},
    {emDef_Text::TestNoStream, "TestNoStream",
     "The recorder answers and takes the account, but there are no streams at port %1. Check the RTSP port."},
    {emDef_Text::TestFine, "TestFine", "All fine: the recorder answers and takes the account."},
    {emDef_Text::TestFineModel, "TestFineModel", "All fine: the recorder answers and takes the account. Model: %1."},
    {emDef_Text::TestDips, "TestDips",
     "The address comes from DIPS when it connects; the test asks at the last known address."},
    {emDef_Text::TwinWarning, "TwinWarning", "\"%1\" is at the same address and port already."},
    {emDef_Text::Shortcuts, "Shortcuts", "Keyboard shortcuts"},
    {emDef_Text::ShortcutKey, "ShortcutKey", "Key"},
    {emDef_Text::ShortcutWhat, "ShortcutWhat", "What it does"},
    {emDef_Text::ShortcutGroupWindow, "ShortcutGroupWindow", "Window"},
    {emDef_Text::ShortcutGroupTree, "ShortcutGroupTree", "Recorder list"},
    {emDef_Text::ShortcutGroupGrid, "ShortcutGroupGrid", "Live pictures"},
    {emDef_Text::KeyTreePlace, "KeyTreePlace", "Show the channel, or the recorder's channels"},
    {emDef_Text::KeyTreeAdd, "KeyTreeAdd", "Add a recorder"},
    {emDef_Text::KeyTreeEdit, "KeyTreeEdit", "Edit the recorder"},
    {emDef_Text::KeyTreeRemove, "KeyTreeRemove", "Remove the recorder"},
    {emDef_Text::KeyTreeFilter, "KeyTreeFilter", "Filter the list"},
    {emDef_Text::KeyTreeExpand, "KeyTreeExpand", "Open or close a recorder's channels"},
    {emDef_Text::KeyTreeMenu, "KeyTreeMenu", "Menu of the recorder"},
    {emDef_Text::KeyGridMove, "KeyGridMove", "Move between the cells"},
    {emDef_Text::KeyGridEnlarge, "KeyGridEnlarge", "Enlarge a cell, and back"},
    {emDef_Text::KeyGridEmpty, "KeyGridEmpty", "Empty the cell"},
    {emDef_Text::KeyTab, "KeyTab", "Go on to the next part of the window"},
    {emDef_Text::StateStalled, "StateStalled", "Stalled"},
    {emDef_Text::HintStalled, "HintStalled", "No new picture comes"},
    {emDef_Text::PictureAge, "PictureAge", "This picture is %1 s old"},
    {emDef_Text::NextTry, "NextTry", "Next try in %1 s"},
    {emDef_Text::Shape1, "Shape1", "&1 cell"},
    {emDef_Text::Shape4, "Shape4", "&4 cells"},
    {emDef_Text::Shape9, "Shape9", "&9 cells"},
    {emDef_Text::Shape16, "Shape16", "1&6 cells"},
    {emDef_Text::ShapeTip, "ShapeTip", "Cells on a page"},
    {emDef_Text::PreviousPage, "PreviousPage", "&Previous page"},
    {emDef_Text::PreviousPageTip, "PreviousPageTip", "Show the page before"},
    {emDef_Text::NextPage, "NextPage", "&Next page"},
    {emDef_Text::NextPageTip, "NextPageTip", "Show the page behind"},
    {emDef_Text::PageOf, "PageOf", "Page %1 of %2"},
    {emDef_Text::Snapshot, "Snapshot", "&Save picture"},
    {emDef_Text::SnapshotTip, "SnapshotTip", "Save the picture of the marked cell as a PNG file"},
    {emDef_Text::SnapshotSaved, "SnapshotSaved", "Picture saved: %1"},
    {emDef_Text::SnapshotFailed, "SnapshotFailed", "The picture can't be written to %1"},
    {emDef_Text::SnapshotNone, "SnapshotNone", "This cell has no picture to save"},
    {emDef_Text::AddRecorder, "AddRecorder", "&Add recorder\u2026"},
    {emDef_Text::AddRecorderTip, "AddRecorderTip", "Take a recorder into the list"},
    {emDef_Text::EditRecorder, "EditRecorder", "&Edit recorder\u2026"},
    {emDef_Text::EditRecorderTip, "EditRecorderTip", "Change the picked recorder"},
    {emDef_Text::RemoveRecorder, "RemoveRecorder", "&Remove recorder"},
    {emDef_Text::RemoveRecorderTip, "RemoveRecorderTip", "Take the picked recorder out of the list"},
    {emDef_Text::RemoveQuestion, "RemoveQuestion",
     "Remove %1 from the list? Its streams end, and its account is forgotten."},
    {emDef_Text::ShowRecorder, "ShowRecorder", "&Show its channels"},
    {emDef_Text::Language, "Language", "&Language"},
    {emDef_Text::LanguageEnglish, "LanguageEnglish", "English"},
    {emDef_Text::LanguageChinese, "LanguageChinese", "\u7e41\u9ad4\u4e2d\u6587"},
    {emDef_Text::LanguageMissing, "LanguageMissing", "The file of that language is missing or damaged"},
    {emDef_Text::DamagedList, "DamagedList",
     "The recorder list was damaged and a new one has begun. The old file was kept: %1"},
    {emDef_Text::LayoutLost, "LayoutLost", "The layout can't be saved in %1"},
    {emDef_Text::NvrMenu, "NvrMenu", "Recorder &menu"},
    {emDef_Text::NvrMenuTip, "NvrMenuTip", "Show the recorder's own menu, which leads to its settings"},
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

QString CHostText::s_F_s_English(emDef_Text nText)
{
    return QString::fromUtf8(g_astTexts[static_cast<std::size_t>(nText)].pszEnglish);
}
