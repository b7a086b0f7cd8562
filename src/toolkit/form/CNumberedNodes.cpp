#include "toolkit/form/CNumberedNodes.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

// A broken document must not make a page count to two thousand million.
constexpr int MostNodes = 10000;

} // namespace

CNumberedNodes::CNumberedNodes(CXmlObj* pDocument, const QString& sParent, const QString& sStem,
                               const char* pszCountKey, int nCountIfMissing)
    : vm_pDocument(pDocument),
      vm_sParent(sParent),
      vm_sStem(sStem),
      vm_sCountKey(QString::fromLatin1(pszCountKey)),
      vm_nCountIfMissing(nCountIfMissing)
{}

int CNumberedNodes::m_F_n_Count() const
{
    if (!vm_pDocument->m_F_b_IsOpen())
        return 0;
    return std::clamp(vm_pDocument->m_F_n_GetValueInt(vm_sParent, vm_sCountKey, vm_nCountIfMissing), 0, MostNodes);
}

void CNumberedNodes::m_S_SetCount(int nCount)
{
    if (!vm_sCountKey.isEmpty())
        vm_pDocument->m_F_b_SetValue(vm_sParent, vm_sCountKey, std::max(nCount, 0));
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
    m_S_TakeOut(nIndex, nLeft);
    m_S_SetCount(nLeft);
}

void CNumberedNodes::m_S_TakeOut(int nIndex, int nLeft)
{
    vm_pDocument->m_F_b_RemoveNods(vm_sParent, m_F_s_Name(nIndex));
    for (int i = nIndex; i < nLeft; ++i)
        vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(i + 1), m_F_s_Name(i));
}

void CNumberedNodes::m_S_RemoveAll()
{
    m_S_TakeOutAll(m_F_n_Count());
    m_S_SetCount(0);
}

void CNumberedNodes::m_S_TakeOutAll(int nCount)
{
    for (int i = 0; i < nCount; ++i)
        vm_pDocument->m_F_b_RemoveNods(vm_sParent, m_F_s_Name(i));
}

void CNumberedNodes::m_S_Swap(int nFirst, int nSecond)
{
    const QString sAside = vm_sStem + u"Temp"_s;
    vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(nFirst), sAside);
    vm_pDocument->m_F_b_RenameNods(vm_sParent, m_F_s_Name(nSecond), m_F_s_Name(nFirst));
    vm_pDocument->m_F_b_RenameNods(vm_sParent, sAside, m_F_s_Name(nSecond));
}
