#include "scene/CPtzBoard.h"

#include <chrono>

namespace {

double Now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

void CPtzBoard::m_S_Reset(int nCameras)
{
    const std::lock_guard objGuard(vm_objLock);
    vm_arCameras.clear();
    for (int i = 0; i < nCameras; ++i)
        vm_arCameras.emplace_back(i);
}

bool CPtzBoard::m_F_b_Has(int nCamera) const
{
    return nCamera >= 0 && nCamera < static_cast<int>(vm_arCameras.size());
}

bool CPtzBoard::m_F_b_Command(int nCamera, const CPtzCamera::Query& mapQuery)
{
    const std::lock_guard objGuard(vm_objLock);
    return m_F_b_Has(nCamera) && vm_arCameras[static_cast<std::size_t>(nCamera)].m_F_b_Command(mapQuery, Now());
}

stDef_PtzState CPtzBoard::m_F_o_State(int nCamera) const
{
    const std::lock_guard objGuard(vm_objLock);
    return m_F_b_Has(nCamera) ? vm_arCameras[static_cast<std::size_t>(nCamera)].m_F_o_State(Now()) : stDef_PtzState();
}

stDef_PtzView CPtzBoard::m_F_o_View(int nCamera, double fAgo) const
{
    const std::lock_guard objGuard(vm_objLock);
    return m_F_b_Has(nCamera) ? vm_arCameras[static_cast<std::size_t>(nCamera)].m_F_o_View(Now() - fAgo)
                              : stDef_PtzView();
}
