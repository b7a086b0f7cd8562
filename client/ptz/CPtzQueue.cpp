#include "ptz/CPtzQueue.h"

#include <algorithm>

namespace {

using emDef_Kind = stDef_PtzOrder::emDef_Kind;

bool IsOfAxis(const stDef_PtzOrder& stOrder, emDef_Kind nKind, const stDef_PtzOrder& stOther)
{
    return stOrder.nKind == nKind && stOrder.nCamera == stOther.nCamera && stOrder.nAxis == stOther.nAxis;
}

} // namespace

void CPtzQueue::m_S_Add(const stDef_PtzOrder& stOrder)
{
    const auto Drop = [this](auto objFits) { std::erase_if(vm_arOrders, objFits); };
    if (stOrder.nKind == emDef_Kind::Once) {
        Drop([&](const stDef_PtzOrder& st) {
            return st.nKind == emDef_Kind::Once && st.nCmd == stOrder.nCmd && st.nCamera == stOrder.nCamera;
        });
        vm_arOrders.push_back(stOrder);
        return;
    }
    Drop([&](const stDef_PtzOrder& st) { return IsOfAxis(st, emDef_Kind::Move, stOrder); });
    if (stOrder.nKind == emDef_Kind::Move)
        vm_arOrders.push_back(stOrder);
    else if (vm_setMoving.erase({stOrder.nCamera, stOrder.nAxis}) > 0)
        vm_arOrders.push_front(stOrder);
}

std::optional<stDef_PtzOrder> CPtzQueue::m_F_o_Take()
{
    if (vm_arOrders.empty())
        return {};
    const stDef_PtzOrder stOrder = vm_arOrders.front();
    vm_arOrders.pop_front();
    if (stOrder.nKind == emDef_Kind::Move)
        vm_setMoving.insert({stOrder.nCamera, stOrder.nAxis});
    return stOrder;
}

void CPtzQueue::m_S_Repeat(stDef_PtzOrder stStop)
{
    const bool bNewer = std::any_of(vm_arOrders.begin(), vm_arOrders.end(), [&](const stDef_PtzOrder& st) {
        return IsOfAxis(st, emDef_Kind::Move, stStop) || IsOfAxis(st, emDef_Kind::Stop, stStop);
    });
    if (!bNewer && --stStop.nTries > 0)
        vm_arOrders.push_front(stStop);
}

void CPtzQueue::m_S_DropOnce()
{
    std::erase_if(vm_arOrders, [](const stDef_PtzOrder& st) { return st.nKind == emDef_Kind::Once; });
}

void CPtzQueue::m_S_DropAllButStops()
{
    std::erase_if(vm_arOrders, [](const stDef_PtzOrder& st) { return st.nKind != emDef_Kind::Stop; });
}
