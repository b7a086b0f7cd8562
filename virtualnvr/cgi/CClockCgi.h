#pragma once

#include "cgi/CCgiSubject.h"
#include "cgi/CDocumentStore.h"

/// The recorder's clock: takes a time with zone and daylight saving at once, as its own settings, and restarts the
/// service for it.
class CClockCgi : public CCgiSubject
{
public:
    /// The documents must outlive it. `fnRestart` is called once a time was taken, from any thread.
    CClockCgi(CDocumentStore& objDocuments, std::function<void()> fnRestart)
        : vm_objDocuments(objDocuments), vm_fnRestart(std::move(fnRestart))
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Set(const stDef_CgiRequest& stRequest);

    CDocumentStore& vm_objDocuments;
    const std::function<void()> vm_fnRestart;
};
