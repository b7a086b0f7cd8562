#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

#include "fleetlink/fleetlink.h"

class QPainter;
class QRectF;

/// What a live cell really shows, in the operator's terms.
enum class emDef_LiveState
{
    Idle,          ///< never connected
    Connecting,    ///< no answer yet
    Waiting,       ///< the stream plays, but no picture has come yet
    Live,          ///< pictures come
    Stalled,       ///< the stream plays, but no new picture came for two seconds
    Disconnecting, ///< told to end
    Disconnected,  ///< ended from here
    Lost,          ///< ended from the other side, or fallen silent
    NoAnswer,      ///< nothing ever came
    NoRing,        ///< there is no shared memory for its pictures
    Refused,       ///< the recorder said no
    NoPicture,     ///< the stream plays, but something keeps its pictures from being shown
    Unusable       ///< no connection object can be made of the recorder's entry
};

/// How a state is told: a word, a sentence, and a mark whose colour is never alone.
class CLiveState
{
public:
    static QString s_F_s_Text(emDef_LiveState nState);
    static QString s_F_s_Hint(emDef_LiveState nState);
    /// The same where it is known what the pictures lack.
    static QString s_F_s_Hint(emDef_LiveState nState, emDef_RingLack nLack);
    /// Colour of the mark, readable on the palette's base colour.
    static QColor s_F_o_Colour(emDef_LiveState nState, const QPalette& objPalette);
    /// The colour of a text, for one of less weight; readable wherever the other is.
    static QColor s_F_o_Quiet(QColor objText);
    static bool s_F_b_IsDark(const QPalette& objPalette);
    /// Draws the mark into the square: filled while pictures come, a ring otherwise.
    static void s_S_DrawMark(QPainter& objPainter, const QRectF& rcMark, emDef_LiveState nState,
                             const QPalette& objPalette);
};
