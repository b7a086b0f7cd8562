#include "live/CLiveState.h"

#include <QPainter>

#include "window/CHostText.h"

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
    emDef_Text nText;
    emDef_Text nHint;
    emDef_Tone nTone;
};

// In the order of emDef_LiveState.
constexpr stDef_StateRow g_astStates[] = {
    {emDef_Text::StateIdle, emDef_Text::HintIdle, emDef_Tone::Quiet},
    {emDef_Text::StateConnecting, emDef_Text::HintConnecting, emDef_Tone::Busy},
    {emDef_Text::StateWaiting, emDef_Text::HintWaiting, emDef_Tone::Busy},
    {emDef_Text::StateLive, emDef_Text::HintWaiting, emDef_Tone::Good},
    {emDef_Text::StateStalled, emDef_Text::HintStalled, emDef_Tone::Bad},
    {emDef_Text::StateDisconnecting, emDef_Text::HintDisconnected, emDef_Tone::Busy},
    {emDef_Text::StateDisconnected, emDef_Text::HintDisconnected, emDef_Tone::Quiet},
    {emDef_Text::StateLost, emDef_Text::HintLost, emDef_Tone::Bad},
    {emDef_Text::StateNoAnswer, emDef_Text::HintNoAnswer, emDef_Tone::Bad},
    {emDef_Text::StateRefused, emDef_Text::HintRefused, emDef_Tone::Bad},
    {emDef_Text::StateNoPicture, emDef_Text::HintNoPicture, emDef_Tone::Bad},
    {emDef_Text::StateUnusable, emDef_Text::HintUnusable, emDef_Tone::Bad},
};

// In the order of emDef_RingLack.
constexpr emDef_Text g_anLacks[] = {
    emDef_Text::HintNoPicture, emDef_Text::LackVideo,    emDef_Text::LackCodec, emDef_Text::LackKeyFrame,
    emDef_Text::LackSets,      emDef_Text::LackLongSets, emDef_Text::LackRoom,  emDef_Text::LackDecoding,
};

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
    return Tr(Row(nState).nText);
}

QString CLiveState::s_F_s_Hint(emDef_LiveState nState)
{
    return Tr(Row(nState).nHint);
}

QString CLiveState::s_F_s_Hint(emDef_LiveState nState, emDef_RingLack nLack)
{
    // A stream whose description is unfit counts as refused, too.
    const bool bLacks = nState == emDef_LiveState::NoPicture || nState == emDef_LiveState::Refused;
    return bLacks && nLack != emDef_RingLack::Nothing ? Tr(g_anLacks[static_cast<std::size_t>(nLack)])
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
