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
    int nPlayed = 0; ///< how often it was played before; the table counts it
};

/// What is known of a fault by its name.
struct stDef_FaultKind
{
    /// When a fault comes into play.
    enum class emDef_When
    {
        AtOnce,   ///< in place of the recorder's answer, whether or not somebody is logged in
        LoggedIn, ///< in place of the answer to a request that brings a login
        Unlogged, ///< by taking the login off the request; once a connection, or no login would ever succeed
        OnBytes,  ///< on the bytes of the true answer, streams included, once it isn't a challenge to log in
        OnReply   ///< on the whole of a true answer that tells its length, once it isn't a challenge to log in
    };
    struct stDef_Range
    {
        long nDefault = 0, nMin = 0, nMax = 0;
    };

    std::string_view sName;
    emDef_When nWhen;
    stDef_Range stArg; ///< what the argument may be; all 0: it takes none
    std::string_view sHelp;
};

/// Which fault is played on which request. Thread-safe.
class CFaultTable
{
public:
    /// @param arKinds faults that it knows; they must outlive it
    explicit CFaultTable(const std::vector<stDef_FaultKind>& arKinds = s_F_ar_Kinds()) : vm_arKinds(arKinds) {}

    /// Sets a fault for all requests whose target contains `sUrlPart`; "*" is all. The latest that fits counts. False
    /// for an unknown name or an argument that the fault doesn't take.
    bool m_F_b_Set(const std::string& sUrlPart, const stDef_Fault& stFault);
    /// The same from the text "urlpart=name[:arg][xTimes]"; the last '=' counts.
    bool m_F_b_Parse(const std::string& sText);
    void m_S_Clear();

    /// The fault that is due for the target.
    std::optional<stDef_Fault> m_F_o_Find(const std::string& sUrl) const;
    /// The same, counted as played. With a name only that fault will do: between finding and playing one, somebody
    /// else may have played it for the last time.
    std::optional<stDef_Fault> m_F_o_Take(const std::string& sUrl, std::string_view sName = {});

    static const std::vector<stDef_FaultKind>& s_F_ar_Kinds(); ///< that the HTTP port plays
    static const stDef_FaultKind* s_F_p_Kind(std::string_view sName);
    static std::vector<std::string_view> s_F_ar_Names();

private:
    struct stDef_Row
    {
        std::string sUrlPart;
        stDef_Fault stFault;
    };

    /// Index of the row that is due; the number of rows if none is.
    std::size_t m_F_n_Row(const std::string& sUrl, std::string_view sName) const;

    const std::vector<stDef_FaultKind>& vm_arKinds;
    mutable std::mutex vm_objMutex;
    std::vector<stDef_Row> vm_arRows;
};
