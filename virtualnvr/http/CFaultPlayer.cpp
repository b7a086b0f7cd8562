#include "http/CFaultPlayer.h"

#include "http/CLoggedReply.h"
#include "http/CSocket.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr std::string_view XmlLine = "Content-Type: text/xml\r\n";
constexpr std::string_view OkXml = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";
constexpr std::size_t NoLimit = std::numeric_limits<std::size_t>::max();

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
    sOut.reserve(sPiece.size() * static_cast<std::size_t>(nTimes));
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

std::string Garbage()
{
    std::string sNoise;
    for (unsigned n = 1; sNoise.size() < 4096; n = n * 1103515245 + 12345)
        sNoise += static_cast<char>(n >> 16);
    return sNoise;
}

std::string Challenge(int nPlayed)
{
    const std::string sNumber = std::to_string(nPlayed);
    return nPlayed % 2 ? "WWW-Authenticate: Basic realm=\"r" + sNumber + "\"\r\n"
                       : "WWW-Authenticate: Digest realm=\"r" + sNumber + "\", nonce=\"n" + sNumber +
                             "\", qop=\"auth\", stale=true\r\n";
}

std::string InChunks(const std::string& sBody, std::size_t nStep)
{
    std::string sOut;
    for (std::size_t nAt = 0; nAt < sBody.size(); nAt += nStep) {
        const std::string_view sPart = std::string_view(sBody).substr(nAt, nStep);
        char szSize[32];
        std::snprintf(szSize, sizeof szSize, "%zx\r\n", sPart.size());
        sOut.append(szSize).append(sPart).append("\r\n");
    }
    return sOut + "0\r\n\r\n";
}

void CutInsideCharacter(std::string& sBody)
{
    const auto it =
        std::find_if(sBody.begin(), sBody.end(), [](char c) { return static_cast<unsigned char>(c) >= 0xC0; });
    if (it != sBody.end())
        sBody.erase(it + 1, sBody.end());
    else
        sBody += "\xE6\x94";
}

} // namespace

struct CFaultPlayer::stDef_AtOnceRow
{
    std::string_view sName;
    bool (*play)(CFaultPlayer&, const stDef_Fault&);
};

struct CFaultPlayer::stDef_OnBytesRow
{
    std::string_view sName;
    bool (*play)(CFaultPlayer&, const stDef_Fault&, const stDef_TrueReply&);
};

struct CFaultPlayer::stDef_OnReplyRow
{
    std::string_view sName;
    bool (*play)(CFaultPlayer&, const stDef_Fault&, CHttpHead&, std::string& sBody);
};

const CFaultPlayer::stDef_AtOnceRow CFaultPlayer::g_arAtOnce[] = {
    {"refuse",
     [](CFaultPlayer& p, const stDef_Fault&) {
         p.vm_objClient.m_S_Reset();
         return false;
     }},
    {"close-after-login", [](CFaultPlayer&, const stDef_Fault&) { return false; }},
    {"silence", [](CFaultPlayer& p, const stDef_Fault&) { return p.m_F_b_Hold(); }},
    {"endless-headers",
     [](CFaultPlayer& p, const stDef_Fault&) { return p.m_F_b_Endless(OkXml, "X-More: and more\r\n"); }},
    {"401",
     [](CFaultPlayer& p, const stDef_Fault&) {
         return p.vm_objReply.m_F_b_SendReply(401, "Unauthorized", "WWW-Authenticate: Basic realm=\"nobody\"\r\n", "");
     }},
    {"changing-challenge",
     [](CFaultPlayer& p, const stDef_Fault& st) {
         return p.vm_objReply.m_F_b_SendReply(401, "Unauthorized", Challenge(st.nPlayed), "");
     }},
    {"redirect",
     [](CFaultPlayer& p, const stDef_Fault& st) {
         const char* pTo = st.nPlayed % 2 ? "Location: /elsewhere\r\n" : "Location: http://192.0.2.1/\r\n";
         return p.vm_objReply.m_F_b_SendReply(static_cast<int>(st.nArg), "Elsewhere", pTo, "");
     }},
    {"status",
     [](CFaultPlayer& p, const stDef_Fault& st) {
         return p.vm_objReply.m_F_b_SendReply(static_cast<int>(st.nArg), "Fault", "", "<root/>");
     }},
    {"garbage",
     [](CFaultPlayer& p, const stDef_Fault&) {
         p.vm_objReply.m_F_b_Send(Garbage());
         return false;
     }},
    {"huge",
     [](CFaultPlayer& p, const stDef_Fault& st) {
         const std::string sPiece(1u << 20, 'x');
         bool bOn = p.vm_objReply.m_F_b_Send(std::string(OkXml) + "Content-Length: " + std::to_string(st.nArg << 20) +
                                             "\r\n\r\n");
         for (long i = 0; bOn && i < st.nArg; ++i)
             bOn = p.vm_objReply.m_F_b_Send(sPiece);
         return bOn;
     }},
    {"deep",
     [](CFaultPlayer& p, const stDef_Fault& st) {
         return p.vm_objReply.m_F_b_SendReply(
             200, "OK", XmlLine, "<root>" + Repeated("<a>", st.nArg) + Repeated("</a>", st.nArg) + "</root>");
     }},
    {"entity-bomb", [](CFaultPlayer& p,
                       const stDef_Fault&) { return p.vm_objReply.m_F_b_SendReply(200, "OK", XmlLine, EntityBomb()); }},
    {"empty",
     [](CFaultPlayer& p, const stDef_Fault&) { return p.vm_objReply.m_F_b_SendReply(200, "OK", XmlLine, ""); }},
    {"endless-chunks",
     [](CFaultPlayer& p, const stDef_Fault&) {
         return p.m_F_b_Endless(std::string(OkXml) + "Transfer-Encoding: chunked\r\n\r\n",
                                "400\r\n" + std::string(1024, 'x') + "\r\n");
     }},
    {"bad-chunks",
     [](CFaultPlayer& p, const stDef_Fault&) {
         p.vm_objReply.m_F_b_Send(std::string(OkXml) +
                                  "Transfer-Encoding: chunked\r\n\r\nnonsense\r\n<root></root>\r\n0\r\n\r\n");
         return false;
     }},
    {"dips-no-colon",
     [](CFaultPlayer& p, const stDef_Fault&) {
         return p.vm_objReply.m_F_b_SendReply(200, "OK", "", "registered at http://192.0.2.7/");
     }},
    {"dips-no-http",
     [](CFaultPlayer& p, const stDef_Fault&) {
         return p.vm_objReply.m_F_b_SendReply(200, "OK", "", "registered at 192.0.2.7:80");
     }},
};

const CFaultPlayer::stDef_OnBytesRow CFaultPlayer::g_arOnBytes[] = {
    {"slow",
     [](CFaultPlayer& p, const stDef_Fault& st, const stDef_TrueReply& stReply) {
         bool bOn = p.m_F_b_SendSlowly(stReply.objHead.m_F_s_Text(), st.nArg);
         for (std::string sPiece; bOn && stReply.more(sPiece);)
             bOn = p.m_F_b_SendSlowly(sPiece, st.nArg);
         return bOn;
     }},
    {"delay",
     [](CFaultPlayer& p, const stDef_Fault& st, const stDef_TrueReply& stReply) {
         return !p.vm_objClient.m_F_b_WaitGone(static_cast<int>(st.nArg)) && p.m_F_b_SendTrue(stReply, NoLimit);
     }},
    {"cut-head",
     [](CFaultPlayer& p, const stDef_Fault& st, const stDef_TrueReply& stReply) {
         p.vm_objReply.m_F_b_Send(stReply.objHead.m_F_s_Text().substr(0, static_cast<std::size_t>(st.nArg)));
         return false;
     }},
    {"cut-body",
     [](CFaultPlayer& p, const stDef_Fault& st, const stDef_TrueReply& stReply) {
         p.m_F_b_SendTrue(stReply, static_cast<std::size_t>(st.nArg));
         return false;
     }},
};

const CFaultPlayer::stDef_OnReplyRow CFaultPlayer::g_arOnReply[] = {
    {"short-length",
     [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead, std::string& sBody) {
         return p.m_F_b_AnnounceLength(objHead, sBody, std::to_string(sBody.size() / 2));
     }},
    {"long-length",
     [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead, std::string& sBody) {
         return p.m_F_b_AnnounceLength(objHead, sBody, std::to_string(sBody.size() + 1000));
     }},
    {"huge-length",
     [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead, std::string& sBody) {
         return p.m_F_b_AnnounceLength(objHead, sBody, "99999999999999999999999999");
     }},
    {"negative-length", [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead,
                           std::string& sBody) { return p.m_F_b_AnnounceLength(objHead, sBody, "-5"); }},
    {"chunked",
     [](CFaultPlayer& p, const stDef_Fault& st, CHttpHead& objHead, std::string& sBody) {
         objHead.m_S_Remove("Content-Length");
         objHead.m_S_Set("Transfer-Encoding", "chunked");
         return p.vm_objReply.m_F_b_Send(objHead.m_F_s_Text() + InChunks(sBody, static_cast<std::size_t>(st.nArg)));
     }},
    {"no-root-end",
     [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead, std::string& sBody) {
         sBody.resize(std::min(sBody.find("</root>"), sBody.size()));
         return p.m_F_b_SendWhole(objHead, sBody);
     }},
    {"cut-utf8",
     [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead, std::string& sBody) {
         CutInsideCharacter(sBody);
         return p.m_F_b_SendWhole(objHead, sBody);
     }},
    {"wrong-encoding", [](CFaultPlayer& p, const stDef_Fault&, CHttpHead& objHead,
                          std::string& sBody) { return p.m_F_b_SendWhole(objHead, AsUtf16(sBody)); }},
};

bool CFaultPlayer::m_F_b_PlayAtOnce(const stDef_Fault& stFault)
{
    for (const stDef_AtOnceRow& stRow : g_arAtOnce)
        if (stRow.sName == stFault.sName)
            return stRow.play(*this, stFault);
    return false;
}

bool CFaultPlayer::m_F_b_PlayOnBytes(const stDef_Fault& stFault, const stDef_TrueReply& stReply)
{
    for (const stDef_OnBytesRow& stRow : g_arOnBytes)
        if (stRow.sName == stFault.sName)
            return stRow.play(*this, stFault, stReply);
    return false;
}

bool CFaultPlayer::m_F_b_PlayOnReply(const stDef_Fault& stFault, CHttpHead objHead, std::string sBody)
{
    for (const stDef_OnReplyRow& stRow : g_arOnReply)
        if (stRow.sName == stFault.sName)
            return stRow.play(*this, stFault, objHead, sBody);
    return false;
}

bool CFaultPlayer::m_F_b_SendWhole(const CHttpHead& objHead, const std::string& sBody)
{
    CHttpHead objSent = objHead;
    objSent.m_S_Set("Content-Length", std::to_string(sBody.size()));
    return vm_objReply.m_F_b_Send(objSent.m_F_s_Text() + sBody);
}

bool CFaultPlayer::m_F_b_AnnounceLength(CHttpHead& objHead, const std::string& sBody, const std::string& sLength)
{
    objHead.m_S_Set("Content-Length", sLength);
    vm_objReply.m_F_b_Send(objHead.m_F_s_Text() + sBody);
    return false; // where the next reply begins is anybody's guess
}

/// At most `nLimit` bytes behind the head.
bool CFaultPlayer::m_F_b_SendTrue(const stDef_TrueReply& stReply, std::size_t nLimit)
{
    bool bOn = vm_objReply.m_F_b_Send(stReply.objHead.m_F_s_Text());
    for (std::string sPiece; bOn && nLimit > 0 && stReply.more(sPiece);) {
        sPiece.resize(std::min(sPiece.size(), nLimit));
        nLimit -= nLimit == NoLimit ? 0 : sPiece.size();
        bOn = vm_objReply.m_F_b_Send(sPiece);
    }
    return bOn;
}

bool CFaultPlayer::m_F_b_SendSlowly(std::string_view sData, long nBytesPerSecond)
{
    const bool bFine = nBytesPerSecond >= 10; // ten small steps look more like a slow line than a large one
    const auto nStep = static_cast<std::size_t>(bFine ? nBytesPerSecond / 10 : nBytesPerSecond);
    for (; !sData.empty(); sData.remove_prefix(std::min(nStep, sData.size())))
        if (!vm_objReply.m_F_b_Send(sData.substr(0, nStep)) || vm_objClient.m_F_b_WaitGone(bFine ? 100 : 1000))
            return false;
    return true;
}

bool CFaultPlayer::m_F_b_Hold()
{
    char arDropped[4096];
    while (vm_objClient.m_F_n_Read(arDropped, sizeof arDropped) > 0) {
    }
    return false;
}

bool CFaultPlayer::m_F_b_Endless(std::string_view sStart, std::string_view sPiece)
{
    bool bOn = vm_objReply.m_F_b_Send(sStart);
    while (bOn)
        bOn = vm_objReply.m_F_b_Send(sPiece);
    return false;
}
