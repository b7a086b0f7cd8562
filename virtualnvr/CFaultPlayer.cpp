#include "CFaultPlayer.h"

#include "CSocket.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr long DefaultHugeMiB = 200;
constexpr long DefaultDepth = 100000;
constexpr std::string_view OkXml = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";

long Arg(const stDef_Fault& stFault, long nDefault)
{
    return stFault.nArg ? stFault.nArg : nDefault;
}

std::string EntityBomb()
{
    std::string sXml = "<?xml version=\"1.0\"?>\n<!DOCTYPE root [\n<!ENTITY a0 \"ha\">\n";
    for (int i = 1; i < 40; ++i) {
        const std::string sPrevious = "&a" + std::to_string(i - 1) + ";";
        sXml += "<!ENTITY a" + std::to_string(i) + " \"" + sPrevious + sPrevious + "\">\n";
    }
    return sXml + "]>\n<root>&a39;</root>";
}

std::string Repeated(std::string_view sPiece, long nTimes)
{
    std::string sOut;
    for (long i = 0; i < nTimes; ++i)
        sOut += sPiece;
    return sOut;
}

/// The text of a body, which is UTF-8, as UTF-16LE; only the characters below 0x80 have to come out right.
std::string AsUtf16(const std::string& sBody)
{
    std::string sOut = "\xff\xfe";
    for (const char c : sBody) {
        sOut += c;
        sOut += '\0';
    }
    return sOut;
}

} // namespace

struct CFaultPlayer::stDef_AtOnceRow
{
    std::string_view sName;
    bool (*play)(CFaultPlayer&, const stDef_Fault&, std::uint64_t nConnection);
};

struct CFaultPlayer::stDef_OnReplyRow
{
    std::string_view sName;
    bool (*play)(CFaultPlayer&, const stDef_Fault&, stDef_WholeReply&);
};

const CFaultPlayer::stDef_AtOnceRow CFaultPlayer::g_arAtOnce[] = {
    {"refuse",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         p.vm_objClient.m_S_Reset();
         return false;
     }},
    {"close-after-login", [](CFaultPlayer&, const stDef_Fault&, std::uint64_t) { return false; }},
    {"silence", [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) { return p.m_F_b_Hold(); }},
    {"endless-headers",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) { return p.m_F_b_Endless(OkXml, "X-More: and more\r\n"); }},
    {"401",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         return p.m_F_b_SendReply("401 Unauthorized", "WWW-Authenticate: Basic realm=\"nobody\"\r\n", "");
     }},
    {"changing-challenge",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t nConnection) {
         static std::atomic<unsigned> s_nCount{0};
         const unsigned nCount = ++s_nCount + static_cast<unsigned>(nConnection);
         const std::string sNumber = std::to_string(nCount);
         return p.m_F_b_SendReply("401 Unauthorized",
                                  nCount % 2 ? "WWW-Authenticate: Digest realm=\"r" + sNumber + "\", nonce=\"" +
                                                   sNumber + "\", qop=\"auth\", stale=true\r\n"
                                             : "WWW-Authenticate: Basic realm=\"r" + sNumber + "\"\r\n",
                                  "");
     }},
    {"redirect",
     [](CFaultPlayer& p, const stDef_Fault& st, std::uint64_t) {
         return p.m_F_b_SendReply(std::to_string(Arg(st, 302)) + " Elsewhere", "Location: http://192.0.2.1/\r\n", "");
     }},
    {"status", [](CFaultPlayer& p, const stDef_Fault& st,
                  std::uint64_t) { return p.m_F_b_SendReply(std::to_string(Arg(st, 500)) + " Fault", "", "<root/>"); }},
    {"garbage",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         std::string sNoise;
         for (unsigned n = 1; sNoise.size() < 4096; n = n * 1103515245 + 12345)
             sNoise += static_cast<char>(n >> 16);
         p.m_F_b_Send(sNoise);
         return false;
     }},
    {"huge",
     [](CFaultPlayer& p, const stDef_Fault& st, std::uint64_t) {
         const std::string sPiece(1u << 20, 'x');
         const long nMiB = Arg(st, DefaultHugeMiB);
         bool bOn = p.m_F_b_Send(std::string(OkXml) + "Content-Length: " + std::to_string(nMiB << 20) + "\r\n\r\n");
         for (long i = 0; bOn && i < nMiB; ++i)
             bOn = p.m_F_b_Send(sPiece);
         return bOn;
     }},
    {"deep",
     [](CFaultPlayer& p, const stDef_Fault& st, std::uint64_t) {
         const long nDepth = Arg(st, DefaultDepth);
         return p.m_F_b_SendReply("200 OK", "Content-Type: text/xml\r\n",
                                  "<root>" + Repeated("<a>", nDepth) + Repeated("</a>", nDepth) + "</root>");
     }},
    {"entity-bomb",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         return p.m_F_b_SendReply("200 OK", "Content-Type: text/xml\r\n", EntityBomb());
     }},
    {"empty", [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) { return p.m_F_b_SendReply("200 OK", "", ""); }},
    {"endless-chunks",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         return p.m_F_b_Endless(std::string(OkXml) + "Transfer-Encoding: chunked\r\n\r\n",
                                "400\r\n" + std::string(1024, 'x') + "\r\n");
     }},
    {"bad-chunks",
     [](CFaultPlayer& p, const stDef_Fault&, std::uint64_t) {
         p.m_F_b_Send(std::string(OkXml) + "Transfer-Encoding: chunked\r\n\r\nnonsense\r\n<root></root>\r\n0\r\n\r\n");
         return false;
     }},
    {"dips-no-colon", [](CFaultPlayer& p, const stDef_Fault&,
                         std::uint64_t) { return p.m_F_b_SendReply("200 OK", "", "registered at http://192.0.2.7/"); }},
    {"dips-no-http", [](CFaultPlayer& p, const stDef_Fault&,
                        std::uint64_t) { return p.m_F_b_SendReply("200 OK", "", "registered at 192.0.2.7:80"); }},
};

const CFaultPlayer::stDef_OnReplyRow CFaultPlayer::g_arOnReply[] = {
    {"slow",
     [](CFaultPlayer& p, const stDef_Fault& st, stDef_WholeReply& stReply) {
         const std::string sAll = stReply.objHead.m_F_s_Text() + stReply.sBody;
         const auto nStep = static_cast<std::size_t>(std::max(Arg(st, 1), 1L));
         for (std::size_t nAt = 0; nAt < sAll.size(); nAt += nStep) {
             // The client has nothing to say here: anything that becomes readable is its leaving.
             if (!p.m_F_b_Send(std::string_view(sAll).substr(nAt, nStep)) || p.vm_objClient.m_F_b_WaitReadable(1000))
                 return false;
         }
         return true;
     }},
    {"delay",
     [](CFaultPlayer& p, const stDef_Fault& st, stDef_WholeReply& stReply) {
         return !p.vm_objClient.m_F_b_WaitReadable(static_cast<int>(Arg(st, 1000))) && p.m_F_b_SendWhole(stReply);
     }},
    {"cut-head",
     [](CFaultPlayer& p, const stDef_Fault& st, stDef_WholeReply& stReply) {
         p.m_F_b_Send(stReply.objHead.m_F_s_Text().substr(0, static_cast<std::size_t>(Arg(st, 20))));
         return false;
     }},
    {"cut-body",
     [](CFaultPlayer& p, const stDef_Fault& st, stDef_WholeReply& stReply) {
         p.m_F_b_Send(stReply.objHead.m_F_s_Text() +
                      stReply.sBody.substr(0, static_cast<std::size_t>(std::max(st.nArg, 0L))));
         return false;
     }},
    {"short-length",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size() / 2));
         p.m_F_b_SendWhole(stReply);
         return false;
     }},
    {"long-length",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size() + 1000));
         p.m_F_b_SendWhole(stReply);
         return false;
     }},
    {"huge-length",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.objHead.m_S_Set("Content-Length", "99999999999999999999999999");
         p.m_F_b_SendWhole(stReply);
         return false;
     }},
    {"negative-length",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.objHead.m_S_Set("Content-Length", "-5");
         p.m_F_b_SendWhole(stReply);
         return false;
     }},
    {"chunked",
     [](CFaultPlayer& p, const stDef_Fault& st, stDef_WholeReply& stReply) {
         const auto nStep = static_cast<std::size_t>(std::max(Arg(st, 100), 1L));
         stReply.objHead.m_S_Remove("Content-Length");
         stReply.objHead.m_S_Set("Transfer-Encoding", "chunked");
         std::string sAll = stReply.objHead.m_F_s_Text();
         for (std::size_t nAt = 0; nAt < stReply.sBody.size(); nAt += nStep) {
             const std::string sPart = stReply.sBody.substr(nAt, nStep);
             char szSize[32];
             std::snprintf(szSize, sizeof szSize, "%zx\r\n", sPart.size());
             sAll += szSize + sPart + "\r\n";
         }
         return p.m_F_b_Send(sAll + "0\r\n\r\n");
     }},
    {"no-root-end",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.sBody.resize(std::min(stReply.sBody.find("</root>"), stReply.sBody.size()));
         stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size()));
         return p.m_F_b_SendWhole(stReply);
     }},
    {"cut-utf8",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         const auto it = std::find_if(stReply.sBody.begin(), stReply.sBody.end(),
                                      [](char c) { return static_cast<unsigned char>(c) >= 0xC0; });
         if (it != stReply.sBody.end())
             stReply.sBody.erase(it + 1, stReply.sBody.end());
         else
             stReply.sBody += "\xE6\x94";
         stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size()));
         return p.m_F_b_SendWhole(stReply);
     }},
    {"wrong-encoding",
     [](CFaultPlayer& p, const stDef_Fault&, stDef_WholeReply& stReply) {
         stReply.sBody = AsUtf16(stReply.sBody);
         stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size()));
         return p.m_F_b_SendWhole(stReply);
     }},
};

bool CFaultPlayer::m_F_b_PlayAtOnce(const stDef_Fault& stFault, std::uint64_t nConnection)
{
    for (const stDef_AtOnceRow& stRow : g_arAtOnce)
        if (stRow.sName == stFault.sName)
            return stRow.play(*this, stFault, nConnection);
    return false;
}

bool CFaultPlayer::m_F_b_PlayOnReply(const stDef_Fault& stFault, stDef_WholeReply stReply)
{
    for (const stDef_OnReplyRow& stRow : g_arOnReply)
        if (stRow.sName == stFault.sName)
            return stRow.play(*this, stFault, stReply);
    return false;
}

bool CFaultPlayer::m_F_b_Send(std::string_view sData)
{
    if (!vm_objClient.m_F_b_Write(sData))
        return false;
    vm_nBytesOut += sData.size();
    return true;
}

bool CFaultPlayer::m_F_b_SendReply(const std::string& sStatus, const std::string& sHeaders, std::string_view sBody)
{
    return m_F_b_Send("HTTP/1.1 " + sStatus + "\r\n" + sHeaders + "Content-Length: " + std::to_string(sBody.size()) +
                      "\r\n\r\n" + std::string(sBody));
}

bool CFaultPlayer::m_F_b_SendWhole(const stDef_WholeReply& stReply)
{
    return m_F_b_Send(stReply.objHead.m_F_s_Text() + stReply.sBody);
}

bool CFaultPlayer::m_F_b_Hold()
{
    vm_objClient.m_F_b_WaitReadable(-1);
    return false;
}

bool CFaultPlayer::m_F_b_Endless(std::string_view sStart, std::string_view sPiece)
{
    bool bOn = m_F_b_Send(sStart);
    while (bOn)
        bOn = m_F_b_Send(sPiece);
    return false;
}
