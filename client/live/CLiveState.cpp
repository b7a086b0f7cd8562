#include "live/CLiveState.h"

#include <QPainter>

#include "window/HostTexts.h"

namespace {

enum class emDef_Tone
{
    Quiet,
    Busy,
    Good,
    Bad
};

struct stDef_StateRow
{
    stDef_Text stText;
    stDef_Text stHint;
    emDef_Tone nTone;
};

// clang-format off
// In the order of emDef_LiveState.
constexpr stDef_StateRow g_astStates[] = {
    {{"StateIdle", "Not connected"}, {"HintIdle", "Choose \"Connect all\" to start the stream"}, emDef_Tone::Quiet},
    {{"StateConnecting", "Connecting"}, {"HintConnecting", "Waiting for the recorder to answer"}, emDef_Tone::Busy},
    {{"StateWaiting", "Connected"}, nsHost::HintWaiting, emDef_Tone::Busy},
    {{"StateLive", "Live"}, nsHost::HintWaiting, emDef_Tone::Good},
    {{"StateStalled", "Stalled"}, {"HintStalled", "No new picture arrives"}, emDef_Tone::Bad},
    {{"StateDisconnecting", "Disconnecting"}, nsHost::HintDisconnected, emDef_Tone::Busy},
    {{"StateDisconnected", "Disconnected"}, nsHost::HintDisconnected, emDef_Tone::Quiet},
    {{"StateLost", "Connection lost"}, {"HintLost", "The recorder ended the stream or stopped sending"}, emDef_Tone::Bad},
    {{"StateNoAnswer", "No answer"}, {"HintNoAnswer", "No answer from the recorder's address"}, emDef_Tone::Bad},
    {{"StateNoRing", "No shared memory"}, {"HintNoRing", "Another program holds this channel's shared memory, or it is full. The log says which"}, emDef_Tone::Bad},
    {{"StateRefused", "Refused"}, {"HintRefused", "Wrong account or password, or no such channel"}, emDef_Tone::Bad},
    {{"StateNoPicture", "No picture"}, nsHost::HintNoPicture, emDef_Tone::Bad},
    {{"StateUnusable", "Not usable"}, nsHost::HintUnusable, emDef_Tone::Bad},
};

// In the order of emDef_RingLack.
constexpr stDef_Text g_astLacks[] = {
    nsHost::HintNoPicture,
    {"LackVideo", "The camera sends no video"},
    {"LackCodec", "The camera's video format can't be shown here. H.264, H.265, MPEG-4 and MJPEG can."},
    {"LackKeyFrame", "The camera has not sent a key frame yet"},
    {"LackSets", "The camera sends no parameter sets (SPS, PPS)"},
    {"LackLongSets", "The camera's parameter sets are too long"},
    {"LackRoom", "The camera's key frames are too large, or memory for streams is short"},
    {"LackDecoding", "The camera's pictures can't be decoded"},
};
// clang-format on

struct stDef_ToneRow
{
    QRgb nOnLight;
    QRgb nOnDark;
};

// At least 3:1 against white and against near-black.
constexpr stDef_ToneRow g_astTones[] = {
    {0xff707780, 0xff8f98a3},
    {0xffb06a00, 0xfff0b040},
    {0xff1a7f37, 0xff4cc764},
    {0xffc62f2f, 0xffff7168},
};

const stDef_StateRow& Row(emDef_LiveState nState)
{
    return g_astStates[static_cast<std::size_t>(nState)];
}

} // namespace

QString CLiveState::s_F_s_Text(emDef_LiveState nState)
{
    return Tr(Row(nState).stText);
}

QString CLiveState::s_F_s_Hint(emDef_LiveState nState)
{
    return Tr(Row(nState).stHint);
}

QString CLiveState::s_F_s_Hint(emDef_LiveState nState, emDef_RingLack nLack)
{
    // A stream whose description is unfit counts as refused, too.
    const bool bLacks = nState == emDef_LiveState::NoPicture || nState == emDef_LiveState::Refused;
    return bLacks && nLack != emDef_RingLack::Nothing ? Tr(g_astLacks[static_cast<std::size_t>(nLack)])
                                                      : s_F_s_Hint(nState);
}

QColor CLiveState::s_F_o_Quiet(QColor objText)
{
    objText.setAlphaF(0.7F);
    return objText;
}

bool CLiveState::s_F_b_IsDark(const QPalette& objPalette)
{
    return objPalette.color(QPalette::Base).lightness() < 128;
}

QColor CLiveState::s_F_o_Colour(emDef_LiveState nState, const QPalette& objPalette)
{
    const stDef_ToneRow& stTone = g_astTones[static_cast<std::size_t>(Row(nState).nTone)];
    return QColor::fromRgb(s_F_b_IsDark(objPalette) ? stTone.nOnDark : stTone.nOnLight);
}

void CLiveState::s_S_DrawMark(QPainter& objPainter, const QRectF& rcMark, emDef_LiveState nState,
                              const QPalette& objPalette)
{
    const QColor objColour = s_F_o_Colour(nState, objPalette);
    const qreal nPen = rcMark.width() / 5;
    objPainter.save();
    objPainter.setRenderHint(QPainter::Antialiasing);
    objPainter.setPen(QPen(objColour, nPen));
    objPainter.setBrush(Row(nState).nTone == emDef_Tone::Good ? QBrush(objColour) : QBrush(Qt::NoBrush));
    objPainter.drawEllipse(rcMark.adjusted(nPen / 2, nPen / 2, -nPen / 2, -nPen / 2));
    objPainter.restore();
}
