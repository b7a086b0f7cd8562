#pragma once

#include "http/stDef_Account.h"

#include <map>
#include <string>

/// One request to the recorder's programs.
struct stDef_CgiRequest
{
    std::string sMethod; ///< "GET" or "POST"
    std::string sPath;   ///< without the leading slash
    std::map<std::string, std::string> mapQuery;
    std::string sQuery; ///< as it came
    std::string sHost;  ///< Host header, without its port
    std::string sBody;
    stDef_Account stAccount; ///< that is logged in; an empty one for programs that need no login

    /// Takes path and query from a request target. Values are percent-decoded, '+' and '#' stand for themselves.
    void m_S_TakeTarget(const std::string& sTarget);

    std::string m_F_s_Value(const char* pszKey) const; ///< empty if the query hasn't that key
    int m_F_n_Number(const char* pszKey) const;        ///< -1 if the value isn't a number
    int m_F_n_Camera(int nChannels) const;             ///< value of "camera"; -1 if the recorder hasn't that one
};
