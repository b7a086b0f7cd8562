#pragma once

#include <QString>

/// Every text that the host shows. The order is that of the table in the .cpp file.
enum class emDef_Text
{
    AppTitle,
    MenuFile,
    MenuView,
    MenuRecorder,
    MenuHelp,
    Quit,
    QuitTip,
    FullScreen,
    FullScreenTip,
    ConnectAll,
    ConnectAllTip,
    DisconnectAll,
    DisconnectAllTip,
    Exchange,
    ExchangeTip,
    About,
    AboutTip,
    AboutBody,
    Toolbar,
    Recorders,
    NoRecorders,
    LiveGrid,
    Channel,
    EmptyCell,
    EmptyCellHint,
    Documents,
    ColumnDocument,
    ColumnFetched,
    ColumnFetchTime,
    ColumnPosted,
    ColumnPostTime,
    ColumnResult,
    ResultOk,
    ResultFetchFailed,
    ResultPostFailed,
    ResultReadOnly,
    ExchangeIdle,
    ExchangeDone,
    ExchangeFailed,
    ExchangeNoRecorder,
    Bytes,
    Milliseconds,
    StateIdle,
    StateConnecting,
    StateWaiting,
    StateLive,
    StateDisconnecting,
    StateDisconnected,
    StateLost,
    StateNoAnswer,
    StateRefused,
    StateUnusable,
    HintIdle,
    HintConnecting,
    HintWaiting,
    HintDisconnected,
    HintLost,
    HintNoAnswer,
    HintRefused,
    HintUnusable,
    FramesPerSecond,
    RecorderLive,
    TotalRecorders,
    TotalLive,
    TotalFrames,
    Imported,
    Count
};

/// Texts by language: the host's language file has the first word, the table's English the second.
class CHostText
{
public:
    static QString s_F_s_Get(emDef_Text nText);
    /// Key under which a language file gives the text.
    static QString s_F_s_Key(emDef_Text nText);
};

/// Short form for layout code.
inline QString Tr(emDef_Text nText)
{
    return CHostText::s_F_s_Get(nText);
}
