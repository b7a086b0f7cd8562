#include "cgi/CCgiRouter.h"

#include <algorithm>

CCgiRouter::CCgiRouter(bool bPC) : vm_eKind(bPC ? emDef_NvrKinds::PC : emDef_NvrKinds::Embedded) {}

void CCgiRouter::m_S_Add(std::unique_ptr<CCgiSubject> pSubject)
{
    for (stDef_CgiRoute& stRoute : pSubject->m_F_ar_Routes())
        if ((static_cast<unsigned>(stRoute.eKinds) & static_cast<unsigned>(vm_eKind)) != 0)
            vm_arRoutes.push_back(std::move(stRoute));
    vm_arSubjects.push_back(std::move(pSubject));
}

const stDef_CgiRoute* CCgiRouter::m_F_p_Find(const stDef_CgiRequest& stRequest) const
{
    const std::string sAction = stRequest.m_F_s_Value("action");
    const auto it = std::find_if(vm_arRoutes.begin(), vm_arRoutes.end(), [&](const stDef_CgiRoute& stRoute) {
        return stRoute.sMethod == stRequest.sMethod && stRoute.sPath == stRequest.sPath &&
               (stRoute.sAction.empty() || stRoute.sAction == sAction);
    });
    return it == vm_arRoutes.end() ? nullptr : &*it;
}

bool CCgiRouter::m_F_b_NeedsLogin(const stDef_CgiRequest& stRequest) const
{
    const stDef_CgiRoute* pRoute = m_F_p_Find(stRequest);
    return !pRoute || pRoute->bLogin;
}

void CCgiRouter::m_S_Restart(std::chrono::milliseconds objTime)
{
    vm_objBackAt = std::chrono::steady_clock::now() + objTime;
}

stDef_CgiReply CCgiRouter::m_F_o_Answer(const stDef_CgiRequest& stRequest) const
{
    if (std::chrono::steady_clock::now() < vm_objBackAt.load())
        return stDef_CgiReply::s_F_o_Plain(503, "ERROR: the service restarts");
    const stDef_CgiRoute* pRoute = m_F_p_Find(stRequest);
    return pRoute ? pRoute->fnAnswer(stRequest) : stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such program");
}
