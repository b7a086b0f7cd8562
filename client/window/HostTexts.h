#pragma once

#include <QString>

#include "fleetlink/fleetlink.h"

/// Texts of the host that stand in no table of their own.
namespace nsHost {

inline constexpr Text AppTitle{"AppTitle", "Zentrix CMS"};
inline constexpr Text ExchangeQuestion{"ExchangeQuestion",
                                       "Download the documents of %1 and upload its settings again, unchanged? The "
                                       "settings on the recorder are overwritten."};
inline constexpr Text AboutBody{"AboutBody", "A sample client of the Fleetlink library, version %1. It shows the live "
                                             "pictures of network video recorders and edits their settings."};
inline constexpr Text Toolbar{"Toolbar", "Toolbar"};
inline constexpr Text Recorders{"Recorders", "Recorders"};
inline constexpr Text LiveGrid{"LiveGrid", "Live pictures"};
inline constexpr Text CellTitle{"CellTitle", "%1 \u2013 %2"};
inline constexpr Text Camera{"Camera", "%1 (%2)"};
inline constexpr Text EmptyCell{"EmptyCell", "Empty"};
inline constexpr Text EmptyCellHint{
    "EmptyCellHint", "Drag a channel here from the list, or select this cell and double-click a channel"};
inline constexpr Text Documents{"Documents", "Documents"};
inline constexpr Text ResultOk{"ResultOk", "Downloaded and uploaded"};
inline constexpr Text ResultFetchFailed{"ResultFetchFailed", "Download failed"};
inline constexpr Text ResultPostFailed{"ResultPostFailed", "Upload failed"};
inline constexpr Text ResultReadOnly{"ResultReadOnly", "Downloaded"};
inline constexpr Text ExchangeIdle{"ExchangeIdle", "No documents exchanged yet"};
inline constexpr Text ExchangeDone{"ExchangeDone", "Documents of %1 exchanged in %2 ms"};
inline constexpr Text ExchangeFailed{"ExchangeFailed", "Documents of %1: %2 of %3 failed"};
inline constexpr Text Bytes{"Bytes", "%1 B"};
inline constexpr Text Milliseconds{"Milliseconds", "%1 ms"};
inline constexpr Text HintWaiting{"HintWaiting", "Waiting for the next picture"};
inline constexpr Text HintDisconnected{"HintDisconnected", "The stream was stopped here"};
inline constexpr Text HintUnusable{"HintUnusable", "The address or account of this recorder can't be used"};
inline constexpr Text HintNoPicture{"HintNoPicture", "The stream plays, but brings no picture"};
inline constexpr Text FramesPerSecond{"FramesPerSecond", "%1 fps"};
inline constexpr Text RecorderLive{"RecorderLive", "%1 of %2 live"};
inline constexpr Text TotalRecorders{"TotalRecorders", "Recorders: %1"};
inline constexpr Text TotalLive{"TotalLive", "Live: %1 of %2"};
inline constexpr Text TotalFrames{"TotalFrames", "%1 fps"};
inline constexpr Text Imported{"Imported", "Recorders added: %1, updated: %2"};
inline constexpr Text FaultAddress{"FaultAddress",
                                   "Enter the recorder's address, such as 192.168.1.10, without a port."};
inline constexpr Text FaultDips{"FaultDips", "Enter the recorder's DIPS id, such as FL-000001."};
inline constexpr Text FaultUser{"FaultUser", "Enter the account to log in with."};
inline constexpr Text FaultNumber{"FaultNumber", "Enter a number from %1 to %2."};
inline constexpr Text FaultSave{
    "FaultSave", "The recorder list can't be saved. Is the disk full, or the configuration folder read-only?"};
inline constexpr Text FaultFull{"FaultFull", "The list is full: it holds 1001 recorders."};
inline constexpr Text FaultKey{
    "FaultKey", "The password can't be stored, because its key can't be made. Is the configuration folder read-only?"};
inline constexpr Text FaultGone{"FaultGone", "This recorder is no longer in the list."};
inline constexpr Text TreeEmpty{"TreeEmpty", "No recorders yet. Press Insert to add one."};
inline constexpr Text TreeNoMatch{"TreeNoMatch", "No recorder matches the filter."};
inline constexpr Text FirstSteps{"FirstSteps", "No recorders yet. Add one to see its cameras."};
inline constexpr Text TreeFilter{"TreeFilter", "Filter recorders"};
inline constexpr Text TreeFilterTip{"TreeFilterTip",
                                    "Show only recorders with this text in their name or address (Ctrl+F)"};
inline constexpr Text TreeChannel{"TreeChannel", "Channel %1"};
inline constexpr Text TreeChannels{"TreeChannels", "%1 channels"};
inline constexpr Text ReachAway{"ReachAway", "Unreachable"};
inline constexpr Text DialogAdd{"DialogAdd", "Add recorder"};
inline constexpr Text DialogEdit{"DialogEdit", "Edit recorder"};
inline constexpr Text FieldName{"FieldName", "&Name:"};
inline constexpr Text FieldNameHint{"FieldNameHint", "if empty, the address is used"};
inline constexpr Text FieldType{"FieldType", "T&ype:"};
inline constexpr Text TypeEmbedded{"TypeEmbedded", "Embedded recorder"};
inline constexpr Text TypePC{"TypePC", "PC recorder"};
inline constexpr Text FieldAddress{"FieldAddress", "&Address:"};
inline constexpr Text FieldFromDips{"FieldFromDips", "Get the address from &DIPS"};
inline constexpr Text FieldDips{"FieldDips", "DIPS &id:"};
inline constexpr Text FieldHttpPort{"FieldHttpPort", "&HTTP port:"};
inline constexpr Text FieldRtspPort{"FieldRtspPort", "&RTSP port:"};
inline constexpr Text FieldUser{"FieldUser", "Acco&unt:"};
inline constexpr Text FieldPassword{"FieldPassword", "&Password:"};
inline constexpr Text FieldPasswordKept{"FieldPasswordKept", "leave empty to keep it"};
inline constexpr Text FieldShowPassword{"FieldShowPassword", "&Show password"};
inline constexpr Text FieldTransport{"FieldTransport", "&Transport:"};
inline constexpr Text TransportTunnel{"TransportTunnel", "HTTP tunnel"};
inline constexpr Text TransportTCP{"TransportTCP", "TCP"};
inline constexpr Text TransportUDP{"TransportUDP", "UDP"};
inline constexpr Text FieldChannels{"FieldChannels", "&Channels:"};
inline constexpr Text TestButton{"TestButton", "T&est connection"};
inline constexpr Text TestStop{"TestStop", "Stop t&est"};
inline constexpr Text TestTakeChannels{"TestTakeChannels", "Ma&ke it %1 channels"};
inline constexpr Text TestRunning{"TestRunning", "Asking the recorder\u2026"};
inline constexpr Text TestStopped{"TestStopped", "The test was stopped."};
inline constexpr Text TestFineModel{"TestFineModel",
                                    "Everything works: the recorder answers and accepts the account. Model: %1."};
inline constexpr Text TestDips{"TestDips",
                               "The address comes from DIPS when connecting; this test uses the last known address."};
inline constexpr Text TwinWarning{"TwinWarning", "\"%1\" already uses this address and port."};
inline constexpr Text Shortcuts{"Shortcuts", "Keyboard shortcuts"};
inline constexpr Text ShortcutKey{"ShortcutKey", "Key"};
inline constexpr Text ShortcutWhat{"ShortcutWhat", "What it does"};
inline constexpr Text PictureAge{"PictureAge", "This picture is %1 s old"};
inline constexpr Text NextTry{"NextTry", "Trying again in %1 s"};
inline constexpr Text PageOf{"PageOf", "Page %1 of %2"};
inline constexpr Text SnapshotSaved{"SnapshotSaved", "Picture saved: %1"};
inline constexpr Text SnapshotFailed{"SnapshotFailed", "The picture can't be written to %1"};
inline constexpr Text SnapshotNone{"SnapshotNone", "This cell has no picture to save"};
inline constexpr Text RemoveQuestion{
    "RemoveQuestion", "Remove %1 from the list? Its streams stop, and its account and password are deleted here."};
inline constexpr Text LanguageEnglish{"LanguageEnglish", "English"};
inline constexpr Text LanguageChinese{"LanguageChinese", "\u7e41\u9ad4\u4e2d\u6587"};
inline constexpr Text LanguageMissing{"LanguageMissing", "The language file is missing or damaged"};
inline constexpr Text LanguageFault{"LanguageFault",
                                    "Language files are missing or damaged, some texts may be in English or empty: %1"};
inline constexpr Text DamagedList{
    "DamagedList", "The recorder list was damaged, and a new one was started. The old file was kept: %1"};
inline constexpr Text LayoutLost{"LayoutLost", "The layout can't be saved in %1"};
inline constexpr Text SettingsTip{"SettingsTip", "Edit the settings of the selected recorder"};
inline constexpr Text SettingsNone{"SettingsNone", "The settings of this kind of recorder can't be edited here"};
inline constexpr Text SettingsOpen{"SettingsOpen", "Settings of %1"};
inline constexpr Text CommandMissing{"CommandMissing", "%1 (not in this version)"};
inline constexpr Text PtzPad{"PtzPad", "Directions"};
inline constexpr Text PtzSpeed{"PtzSpeed", "Speed"};
inline constexpr Text PtzZoom{"PtzZoom", "Zoom"};
inline constexpr Text PtzFocus{"PtzFocus", "Focus"};
inline constexpr Text PtzIris{"PtzIris", "Iris"};
inline constexpr Text PtzAuto{"PtzAuto", "Auto"};
inline constexpr Text PtzAutoPan{"PtzAutoPan", "Auto pan"};
inline constexpr Text PtzPresets{"PtzPresets", "Presets"};
inline constexpr Text PtzPresetNumber{"PtzPresetNumber", "Preset %1"};
inline constexpr Text PtzTours{"PtzTours", "Tours"};
inline constexpr Text PtzTourNumber{"PtzTourNumber", "Tour %1"};
inline constexpr Text PtzHint{"PtzHint", "Hold a direction to move the camera. It stops when you let go."};
inline constexpr Text PtzNoChannel{"PtzNoChannel", "Select a live cell to move its camera."};
inline constexpr Text PtzNotLive{"PtzNotLive", "The camera can be moved while its picture is live. Now: %1"};
inline constexpr Text PtzAsking{"PtzAsking", "Loading presets and tours\u2026"};
inline constexpr Text PtzNoPlaces{"PtzNoPlaces", "This camera has no presets or tours."};
inline constexpr Text PtzAway{"PtzAway", "The recorder can't be reached."};
inline constexpr Text PtzFailed{"PtzFailed", "The last command failed."};
inline constexpr Text LoginTitle{"LoginTitle", "Login"};
inline constexpr Text LoginChannels{"LoginChannels", "%1 of %2 channels: %3"};
inline constexpr Text LoginNoChannels{"LoginNoChannels", "None of %1 channels"};
inline constexpr Text LoginCan{"LoginCan", "Can be recorded alone"};
inline constexpr Text LoginCannot{"LoginCannot", "Can't be recorded alone"};
inline constexpr Text LoginNone{"LoginNone", "None"};
inline constexpr Text LoginAsking{"LoginAsking", "Loading\u2026"};
inline constexpr Text LoginSilent{"LoginSilent", "The recorder does not tell."};

} // namespace nsHost

/// The text in the language of the host's own file; the English of its declaration where the file has none.
QString Tr(const stDef_Text& stText);
/// The text without its mnemonic, which stands in brackets of its own in Chinese, and without dots at its end.
QString PlainText(QString sText);
