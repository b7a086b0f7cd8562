#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A way of failing, by name.
struct stDef_Fault
{
    std::string sName;
    long nArg = 0;   ///< bytes, ms, status...: as the fault says; 0 stands for its own default
    int nTimes = -1; ///< how often it is played; -1 always
};

/// What is known of a fault by its name.
struct stDef_FaultKind
{
    /// When a fault comes into play.
    enum class emDef_When
    {
        AtOnce,   ///< in place of the recorder's answer, whether or not somebody is logged in
        LoggedIn, ///< in place of the answer to a request that brings a login
        OnReply   ///< on the recorder's true answer, once it is not a challenge to log in
    };

    std::string_view sName;
    emDef_When nWhen;
    std::string_view sHelp;
};

/// Which fault is played on which request. Thread-safe.
class CFaultTable
{
public:
    /// Sets a fault for all requests whose target contains `sUrlPart`; "*" is all. The latest that fits counts. False
    /// for an unknown name.
    bool m_F_b_Set(const std::string& sUrlPart, const stDef_Fault& stFault);
    /// The same from the text "urlpart=name[:arg][xTimes]"; the last '=' counts.
    bool m_F_b_Parse(const std::string& sText);
    void m_S_Clear();

    /// The fault that is due for the target; `m_F_o_Take` also counts it as played.
    std::optional<stDef_Fault> m_F_o_Find(const std::string& sUrl) const;
    std::optional<stDef_Fault> m_F_o_Take(const std::string& sUrl);

    static const std::vector<stDef_FaultKind>& s_F_ar_Kinds();
    static const stDef_FaultKind* s_F_p_Kind(std::string_view sName);
    static std::vector<std::string_view> s_F_ar_Names();

private:
    struct stDef_Row
    {
        std::string sUrlPart;
        stDef_Fault stFault;
    };

    const stDef_Row* m_F_p_Row(const std::string& sUrl) const;

    mutable std::mutex vm_objMutex;
    std::vector<stDef_Row> vm_arRows;
};
