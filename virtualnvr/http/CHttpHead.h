#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Head of a request or a reply: first line and header lines as they came.
class CHttpHead
{
public:
    static constexpr std::size_t MaxSize = 64u << 10;

    /// Takes a whole head apart, its blank line included. False if the first line is none.
    bool m_F_b_Parse(std::string_view sText);

    std::string vm_sFirst; ///< first line
    std::vector<std::pair<std::string, std::string>> vm_arLines;

    /// Of the first line of that name, in any case; empty if none.
    std::string m_F_s_Value(std::string_view sName) const;
    void m_S_Remove(std::string_view sName);
    void m_S_Set(std::string_view sName, std::string sValue);
    std::string m_F_s_Text() const; ///< the head as it goes on the wire

    // Of a request.
    std::string m_F_s_Method() const;
    std::string m_F_s_Target() const;
    // Of a reply.
    int m_F_n_Status() const;
    /// True if the connection stays open behind this message.
    bool m_F_b_KeepAlive() const;
};

/// Finds the end of a body in a stream of bytes.
class CBodyFramer
{
public:
    /// Of a reply to `sMethod`, or of a request if that is empty.
    CBodyFramer(const CHttpHead& objHead, std::string_view sMethod);

    /// Goes through bytes that follow the head; returns how many of them belong to the body. A bad body takes none.
    std::size_t m_F_n_Feed(std::string_view sData);
    bool m_F_b_Done() const { return vm_nKind != emDef_Kind::UntilClose && vm_bDone; }
    /// True if a length made no sense: where the body ends isn't known any more.
    bool m_F_b_Bad() const { return vm_bBad; }

private:
    enum class emDef_Kind
    {
        Counted,
        Chunked,
        UntilClose
    };
    enum class emDef_Chunk
    {
        Size,
        Data,
        DataEnd,
        Trailer
    };

    void m_S_FeedChunkByte(char c);
    void m_S_SetLength(const std::string& sText, int nBase);

    emDef_Kind vm_nKind = emDef_Kind::Counted;
    bool vm_bDone = false;
    bool vm_bBad = false;
    std::uint64_t vm_nLeft = 0; ///< of the counted body or the chunk
    emDef_Chunk vm_nChunk = emDef_Chunk::Size;
    std::string vm_sLine;
};
