#include "core/CWndNvrPC.h"

void CWndNvrPC::m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream)
{
    m_S_StartRtsp(m_F_o_ReadTarget(nNvrID), nNvrID, nChannel, nStream);
}
