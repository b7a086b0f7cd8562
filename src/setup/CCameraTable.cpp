#include "setup/CCameraTable.h"

#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"

using namespace Qt::StringLiterals;

namespace {

// More slots than any recorder has channels: a number beyond this is not believed.
constexpr int MostSlots = 4096;

void Release(CCamObj_Base*& pSlot)
{
    if (pSlot)
        pSlot->m_S_Release(&pSlot);
}

} // namespace

CCameraTable::CCameraTable(CWndNvrEmbedded* pNvr) : vm_pNvr(pNvr)
{
    m_arrCamObj.resize(static_cast<std::size_t>(std::clamp(m_F_n_MaxCam(), 0, MostSlots)));
}

CCameraTable::~CCameraTable()
{
    m_S_ReleaseAll();
}

int CCameraTable::m_F_n_MaxCam() const
{
    return vm_pNvr->vm_xmlSystemInfo.m_F_n_GetValueInt(u"/root/Local"_s, u"MaxCam"_s, 0);
}

CCamObj_Base* CCameraTable::m_F_p_Camera(int nIndex) const
{
    return m_F_b_HasSlot(nIndex) ? m_arrCamObj[static_cast<std::size_t>(nIndex)] : nullptr;
}

bool CCameraTable::m_F_b_Place(int nIndex, CCamObj_Base* pCamera)
{
    if (!m_F_b_HasSlot(nIndex))
        return false;
    Release(m_F_p_Slot(nIndex));
    m_F_p_Slot(nIndex) = pCamera;
    if (pCamera)
        pCamera->m_nCamIndex = nIndex;
    return true;
}

void CCameraTable::m_S_TakeOut(int nIndex)
{
    if (!m_F_b_HasSlot(nIndex))
        return;
    Release(m_F_p_Slot(nIndex));
    const auto itSlot = m_arrCamObj.begin() + nIndex;
    std::rotate(itSlot, itSlot + 1, m_arrCamObj.end());
    std::for_each(itSlot, m_arrCamObj.end(), [](CCamObj_Base* pCamera) {
        if (pCamera)
            --pCamera->m_nCamIndex;
    });
}

void CCameraTable::m_S_Swap(int nFirst, int nSecond)
{
    if (!m_F_b_HasSlot(nFirst) || !m_F_b_HasSlot(nSecond))
        return;
    std::swap(m_F_p_Slot(nFirst), m_F_p_Slot(nSecond));
    for (const int nIndex : {nFirst, nSecond}) {
        if (CCamObj_Base* const pCamera = m_F_p_Slot(nIndex))
            pCamera->m_nCamIndex = nIndex;
    }
}

void CCameraTable::m_S_ReleaseAll()
{
    for (CCamObj_Base*& pSlot : m_arrCamObj)
        Release(pSlot);
}
