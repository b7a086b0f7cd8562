#pragma once

#include "cgi/stDef_CgiReply.h"
#include "cgi/stDef_CgiRequest.h"

#include <functional>
#include <string_view>
#include <vector>

/// Which kinds of recorder have a program.
enum class emDef_NvrKinds : unsigned
{
    Embedded = 1,
    PC = 2,
    Both = 3
};

/// One program: what a request has to say for it, and who answers.
struct stDef_CgiRoute
{
    emDef_NvrKinds eKinds;
    std::string_view sMethod, sPath;
    std::string_view sAction;                                        ///< value of "action"; empty: any
    std::function<stDef_CgiReply(const stDef_CgiRequest&)> fnAnswer; ///< called from any thread
    bool bLogin = true;
};

/// What belongs together among the recorder's programs. A further subject is a class of its own, added to the router.
class CCgiSubject
{
public:
    CCgiSubject() = default;
    virtual ~CCgiSubject() = default;
    CCgiSubject(const CCgiSubject&) = delete;
    CCgiSubject& operator=(const CCgiSubject&) = delete;

    /// Its rows of the router's table. They refer to this object.
    virtual std::vector<stDef_CgiRoute> m_F_ar_Routes() = 0;
};
