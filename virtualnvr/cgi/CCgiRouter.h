#pragma once

#include "cgi/CCgiSubject.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

/// The recorder behind its URLs: a table of routes, from method, path and "action" to the subject that answers. Knows
/// no HTTP server. Thread-safe once all subjects are added.
class CCgiRouter
{
public:
    explicit CCgiRouter(bool bPC);

    void m_S_Add(std::unique_ptr<CCgiSubject> pSubject);

    /// False for programs that are asked without an account.
    bool m_F_b_NeedsLogin(const stDef_CgiRequest& stRequest) const;

    /// Answers 503 for so long: the service restarts.
    void m_S_Restart(std::chrono::milliseconds objTime);

    /// 404 for what no subject of this kind of recorder names.
    stDef_CgiReply m_F_o_Answer(const stDef_CgiRequest& stRequest) const;

private:
    const stDef_CgiRoute* m_F_p_Find(const stDef_CgiRequest& stRequest) const;

    const emDef_NvrKinds vm_eKind;
    std::atomic<std::chrono::steady_clock::time_point> vm_objBackAt{};
    std::vector<std::unique_ptr<CCgiSubject>> vm_arSubjects;
    std::vector<stDef_CgiRoute> vm_arRoutes; ///< of this kind of recorder
};
