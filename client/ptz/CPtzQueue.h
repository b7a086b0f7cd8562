#pragma once

#include <deque>
#include <optional>
#include <set>
#include <utility>

/// One command for a camera, as `CWndNvrBase::m_S_ExecPTZCmd` takes it.
struct stDef_PtzOrder
{
    enum class emDef_Kind
    {
        Once,
        Move, ///< begins or changes a movement, which lasts until its stop
        Stop
    };

    emDef_Kind nKind = emDef_Kind::Once;
    int nCmd = 0;
    int nCamera = 0;
    int nParam1 = 0;
    int nParam2 = 0;
    int nAxis = 0;   ///< of a movement: 0 pan and tilt, 1 zoom
    int nTries = 10; ///< of a stop that finds no answer
};

/// Commands that wait to be sent. A movement takes the place of one that was not sent yet, and a stop goes ahead of all
/// else; there is none for a movement that never went out, and always one for a movement that did. Not thread-safe.
class CPtzQueue
{
public:
    void m_S_Add(const stDef_PtzOrder& stOrder);
    /// The next one to send.
    std::optional<stDef_PtzOrder> m_F_o_Take();
    /// A stop found no answer: it goes again, unless the camera has been told something newer or it was tried enough.
    void m_S_Repeat(stDef_PtzOrder stStop);
    /// Commands that are no movement: late, they would surprise whoever looks at the camera then.
    void m_S_DropOnce();
    /// Also movements.
    void m_S_DropAllButStops();
    bool m_F_b_Empty() const { return vm_arOrders.empty(); }

private:
    using Axis = std::pair<int, int>; ///< camera, axis

    std::deque<stDef_PtzOrder> vm_arOrders;
    std::set<Axis> vm_setMoving; ///< those whose last movement was sent and not stopped yet
};
