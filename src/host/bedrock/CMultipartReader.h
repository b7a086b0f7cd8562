#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

/// Takes a multipart stream apart: bytes go in as they come, whole parts come out. Knows no sockets.
///
/// Lenient as recorders need it: the boundary with or without quotes, its dashes told twice, once or never, lines ended
/// by LF or CR LF, a `Content-Length` or none. A part with a length comes out with its last byte, others with the
/// delimiter behind them; after a length that turned out wrong none is believed any more. Empty parts are left out and
/// parts beyond `MaxPart` dropped, and when more wait than `MaxQueued` or `MaxQueuedBytes`, the oldest are.
/// What is held is bounded by `MaxPart`, `MaxQueuedBytes` and the bytes of one `m_S_Feed`.
class CMultipartReader
{
public:
    static constexpr std::size_t MaxPart = 4u << 20;
    static constexpr std::size_t MaxHead = 16u << 10; ///< head lines of a part; one with more is dropped
    static constexpr std::size_t MaxQueued = 64;
    static constexpr std::size_t MaxQueuedBytes = 8u << 20; ///< the newest part is kept in any case

    /// Begins a stream with the `Content-Type` of its reply. Without a boundary in it all bytes are one part.
    void m_S_Begin(std::string_view sContentType);
    void m_S_Feed(const char* pData, std::size_t nSize);
    /// The reply has ended. A part that was cut off is lost.
    void m_S_End();
    /// Takes the oldest whole part; false if there is none.
    bool m_F_b_Pop(std::string& sPart);
    bool m_F_b_Empty() const { return vm_arParts.empty(); }

private:
    enum class emDef_State
    {
        Whole, ///< no multipart stream
        Outside,
        Head,
        Body
    };
    enum class emDef_Line
    {
        Other,
        Delimiter,
        Closing ///< the delimiter behind the last part
    };

    bool m_F_b_Step();
    bool m_F_b_StepOutside();
    bool m_F_b_StepHead();
    bool m_F_b_StepBody();
    bool m_F_b_NextLine(std::string_view& sLine);
    emDef_Line m_F_n_Kind(std::string_view sLine) const;
    bool m_F_b_MayBecomeDelimiter(std::string_view sBegun) const;
    void m_S_Leave(emDef_Line nDelimiter);
    void m_S_DropUpTo(std::size_t nEnd);
    void m_S_BoundBody();
    void m_S_Push(std::string sPart);

    emDef_State vm_nState = emDef_State::Whole;
    std::string vm_sBoundary; ///< without dashes in front
    std::string vm_sBuffer;
    std::size_t vm_nStart = 0;   ///< first byte that is still needed: of the body, while there is one
    std::size_t vm_nLine = 0;    ///< begin of the line in hand
    std::size_t vm_nScanned = 0; ///< that line has no end before here
    std::size_t vm_nHeadBytes = 0;
    std::optional<std::size_t> vm_nLength; ///< told for the part in hand
    bool vm_bTrustLength = true;
    bool vm_bBehindCounted = false; ///< nothing but line ends has come since a part that had a length
    bool vm_bOversized = false;     ///< the part in hand is beyond MaxPart
    std::deque<std::string> vm_arParts;
    std::size_t vm_nQueuedBytes = 0;
};
