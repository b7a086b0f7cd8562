#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "widgets/TimeLine.h"

class CTimeStateWnd;
class QKeyEvent;

/// A bar that stands for one day: on its free parts the mouse selects a span, its blocks are moved and resized, and
/// never overlap. Made by `CTimeListCtrl`; knows its blocks by times and colours alone. GUI thread only.
///
/// Keys, which the list hands to the bar of its current row: Left and Right focus the block before and after, Home and
/// End the first and the last. With Ctrl the arrows move the focused block, with Shift its end, with Alt its start:
/// Left and Right by a minute, Down and Up by a quarter of an hour back and forth.
///
/// View-only, a press begins a span that is shown on all bars of the process and follows the pointer, also without a
/// button, until the next press; blocks let the mouse through, and keys do nothing.
class CTimeStateBar : public QWidget
{
    Q_OBJECT

public:
    using TIME_STATE = ::TIME_STATE;
    /// Tells a block in words, for tool tip and screen reader, by the number of its bar. Plain text.
    using Teller = std::function<QString(int nBarID, const TIME_STATE& stState)>;
    /// Ms of a clock that nobody sets.
    using TickMs = std::function<quint64()>;

    explicit CTimeStateBar(bool bViewOnly);
    ~CTimeStateBar() override;

    /// Puts the bar into its parent. The first one makes the selection block.
    bool m_F_b_Create(const stDef_Rect& stRect, QWidget* pParent, int nID);

    /// Adds a block, with its times cut down to minutes. Its position, or -1 if it would reach into another one: then
    /// the argument is as it was. Otherwise it holds the new window.
    int m_S_AddState(TIME_STATE& stState);
    /// Takes all blocks off. Those that are added until `m_S_EndFill` get the windows of these, which costs a fraction
    /// of making new ones.
    void m_S_BeginFill();
    void m_S_EndFill();
    /// Makes the selection an empty one of this bar.
    void m_S_ClearSelect();
    /// Before the bar goes: what all bars share forgets it.
    void m_S_StepOut();
    /// Null brings the times back, as "08:15 - 12:00".
    void m_S_SetTeller(const Teller& fnTeller);
    /// Whether the key was one of the bar's.
    bool m_F_b_Key(const QKeyEvent& objKey);

    QString m_F_s_Times(int nIndex) const; ///< "08:15 - 12:00"; empty if there is no such block
    QString m_F_s_Tell(int nIndex) const;
    /// Whether the next step of a drag is due; if so, the one after has to wait for 100 ms.
    bool m_F_b_TakeTick();

    /// Whether the mouse holds a block or draws a selection: what it holds must not go then.
    static bool s_F_b_Dragging();
    /// The clock of all bars; null brings the real one back.
    static void s_S_SetClock(const TickMs& fnTickMs);

    qint32 vm_nBarID = -1;        ///< its row
    QList<TIME_STATE> vm_arState; ///< sorted by start
    bool vm_bTracking = false;    ///< the pointer is over it
    bool vm_bViewOnly;
    quint64 vm_nLastTick = 0; ///< of the last step of a drag

    // Shared by all bars.
    static TIME_STATE s_stSelect; ///< the selection and its block; both times `NoTime` if there is none
    static quint64 s_nMinTime;    ///< how far the running selection may reach
    static quint64 s_nMaxTime;
    static qint32 s_nDragX;     ///< where it began, -1 if none runs
    static quint64 s_nAnchor;   ///< the same as a time, or `NoTime`
    static qint32 s_nSelectBar; ///< number of the bar of the selection, -1 at first; who uses a selection resets it
    static QPointer<CTimeStateWnd> s_pFocusWnd; ///< the focused block; set by `CTimeStateWnd::s_S_Focus`
    static quint64 s_nViewStart;                ///< the span that view-only bars show
    static quint64 s_nViewEnd;
    static quint64 s_nViewAnchor; ///< where it began, or `NoTime`

Q_SIGNALS:
    void S_Changed(int nIndex, int nBarID); ///< message 1125: a block was changed or clicked; -1: a selection began
    void S_ViewSpan();                      ///< message 1126: the span of view-only bars changed
    void S_Selected();                      ///< becomes command 1170 of the page: a selection was finished
    void S_DoubleClicked();                 ///< becomes command 1172 of the page

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    CTimeStateWnd* m_F_p_TakeBlock();
    CTimeStateWnd* m_F_p_MakeBlock();
    void m_S_BeginView(quint64 nTime);
    void m_S_BeginSelect(int nX, quint64 nTime);
    void m_S_SelectTo(quint64 nTime);
    void m_S_Renumber();
    void m_S_Place(const TIME_STATE& stState);
    void m_S_PlaceAll();
    void m_S_DragEdge(int nIndex, int nScreenX, bool (*fnSet)(QList<TIME_STATE>&, int, quint64));
    void m_S_Report(int nIndex, bool bChanged);

    int m_F_n_Focused() const;
    bool m_F_b_Choose(int nKey);
    bool m_F_b_ChangeByKey(Qt::KeyboardModifiers nModifiers, qint64 nMinutes);

    Teller vm_fnTeller;
    QList<CTimeStateWnd*> vm_arSpare; ///< windows without a block, last used first
};
