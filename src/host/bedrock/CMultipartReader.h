#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

/// Takes a multipart stream apart: bytes go in as they come, whole parts come out. Knows no sockets.
///
/// Lenient as recorders need it: the boundary with or without quotes and with its dashes told once or twice, lines
/// ended by LF or CR LF, a `Content-Length` or none. A length that turns out wrong is not believed again. Parts without
/// bytes are left out, parts beyond `MaxPart` are dropped, and so are the oldest when more than `MaxQueued` wait.
class CMultipartReader
{
public:
    static constexpr std::size_t MaxPart = 4u << 20;
    static constexpr std::size_t MaxHead = 16u << 10;
    static constexpr std::size_t MaxQueued = 64;

    /// Begins a stream with the `Content-Type` of its reply. Without a boundary in it all bytes are one part.
    void m_S_Begin(std::string_view sContentType);
    void m_S_Feed(const char* pData, std::size_t nSize);
    /// The reply has ended: what it had in hand becomes a part if it can be one.
    void m_S_End();
    /// Takes the oldest whole part; false if there is none.
    bool m_F_b_Pop(std::string& sPart);
    bool m_F_b_Empty() const { return vm_arParts.empty(); }

private:
    enum class emDef_State
    {
        Delimiter, ///< looks for the next delimiter and drops what stands before it
        Head,
        Counted,  ///< the body has a length
        Searched, ///< the body ends at the next delimiter
        After,    ///< behind a counted body: the delimiter has to follow
        Whole     ///< no multipart stream
    };

    bool m_F_b_Step();
    bool m_F_b_StepDelimiter();
    bool m_F_b_StepHead();
    bool m_F_b_StepCounted();
    bool m_F_b_StepSearched();
    bool m_F_b_StepAfter();
    std::size_t m_F_n_FindDelimiter(std::size_t nFrom, std::size_t& nEnd) const;
    void m_S_Push(std::string sPart);

    emDef_State vm_nState = emDef_State::Whole;
    std::string vm_sDelimiter; ///< two dashes and the boundary without its own
    std::string vm_sBuffer;
    std::size_t vm_nScanned = 0; ///< bytes of the buffer in which no delimiter begins
    std::size_t vm_nLength = 0;  ///< of a counted body
    bool vm_bTrustLength = true;
    bool vm_bOversized = false; ///< the part in hand is too large
    std::deque<std::string> vm_arParts;
};
