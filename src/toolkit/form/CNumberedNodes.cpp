#include "toolkit/form/CNumberedNodes.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

// A broken document must not make a page count to two thousand million.
constexpr int MostNodes = 10000;

} // namespace

CNumberedNodes::CNumberedNodes(CXmlObj* pDocument, const QString& sParent, const QString& sStem)
    : vm_pDocument(pDocument), vm_sParent(sParent), vm_sStem(sStem)
{}

int CNumberedNodes::m_F_n_Count() const
{
    return std::clamp(vm_pDocument->m_F_n_GetValueInt(vm_sParent, u"count"_s, 0), 0, MostNodes);
}

void CNumberedNodes::m_S_SetCount(int nCount)
{
    vm_pDocument->m_F_b_SetValue(vm_sParent, u"count"_s, std::max(nCount, 0));
}

QString CNumberedNodes::m_F_s_Name(int nIndex) const
{
    return vm_sStem + QString::asprintf("%03d", nIndex);
}

QString CNumberedNodes::m_F_s_Path(int nIndex) const
{
    return vm_sParent + u'/' + m_F_s_Name(nIndex);
}

int CNumberedNodes::m_F_n_Append()
{
    const int nIndex = m_F_n_Count();
    m_S_SetCount(nIndex + 1);
    return nIndex;
}

void CNumberedNodes::m_S_Remove(int nIndex)
{
    const int nLeft = m_F_n_Count() - 1;
    vm_pDocument->m_F_b_RemoveNods(vm_sParent, m_F_s_Name(nIndex));
    for (int i = nIndex; i < nLeft; ++i)
        vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(i + 1), m_F_s_Name(i));
    m_S_SetCount(nLeft);
}

void CNumberedNodes::m_S_RemoveAll()
{
    const int nCount = m_F_n_Count();
    for (int i = 0; i < nCount; ++i)
        vm_pDocument->m_F_b_RemoveNods(vm_sParent, m_F_s_Name(i));
    m_S_SetCount(0);
}

void CNumberedNodes::m_S_Swap(int nFirst, int nSecond)
{
    const QString sAside = vm_sStem + u"Temp"_s;
    vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(nFirst), sAside);
    vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(nSecond), m_F_s_Name(nFirst));
    vm_pDocument->m_F_b_RenameNods(vm_sParent, sAside, m_F_s_Name(nSecond));
}
