#include "cgi/stDef_CgiReply.h"

#include <algorithm>
#include <pugixml.hpp>
#include <sstream>

namespace {
/// The text without byte order mark and XML declaration, which may not stand inside an envelope.
std::string_view Bare(std::string_view s)
{
    if (s.substr(0, 3) == "\xEF\xBB\xBF")
        s.remove_prefix(3);
    const std::size_t nEnd = s.substr(0, 6) == "<?xml " ? s.find("?>") : std::string_view::npos;
    if (nEnd == std::string_view::npos)
        return s;
    s.remove_prefix(nEnd + 2);
    return s.substr(std::min(s.find_first_not_of("\r\n"), s.size()));
}
} // namespace

stDef_CgiReply stDef_CgiReply::s_F_o_Envelope(std::string_view sDocument, int nStatus)
{
    stDef_CgiReply stReply;
    stReply.nStatus = nStatus;
    stReply.sBody = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<XML>\n";
    stReply.sBody += Bare(sDocument);
    stReply.sBody += "\n</XML>\n";
    return stReply;
}

stDef_CgiReply stDef_CgiReply::s_F_o_Envelope(const pugi::xml_document& objDocument, int nStatus)
{
    std::ostringstream objText;
    objDocument.document_element().print(objText, "  ");
    return s_F_o_Envelope(objText.str(), nStatus);
}

stDef_CgiReply stDef_CgiReply::s_F_o_Result(int nStatus, const std::string& sReason)
{
    pugi::xml_document objDocument;
    pugi::xml_node objResult = objDocument.append_child("root").append_child("Result");
    objResult.append_attribute("Code") = nStatus == 200 ? "OK" : "ERROR";
    if (nStatus != 200)
        objResult.append_attribute("Reason") = sReason.c_str();
    return s_F_o_Envelope(objDocument, nStatus);
}

stDef_CgiReply stDef_CgiReply::s_F_o_Plain(int nStatus, const std::string& sText)
{
    stDef_CgiReply stReply;
    stReply.nStatus = nStatus;
    stReply.sType = "text/plain; charset=utf-8";
    stReply.sBody = sText + "\r\n";
    return stReply;
}
