#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pugi {
class xml_document;
}

/// What goes back. With fnPart set the reply is an endless multipart stream of such parts.
struct stDef_CgiReply
{
    int nStatus = 200;
    std::string sType = "text/xml; charset=utf-8";
    std::string sBody;
    std::function<std::string(long nPart)> fnPart;
    int nPartIntervalMs = 0;

    /// A document in the envelope "<XML>" that clients look for.
    static stDef_CgiReply s_F_o_Envelope(std::string_view sDocument, int nStatus = 200);
    static stDef_CgiReply s_F_o_Envelope(const pugi::xml_document& objDocument, int nStatus = 200);
    /// What became of a change: "OK" with status 200, else why it was refused.
    static stDef_CgiReply s_F_o_Result(int nStatus, const std::string& sReason = {});
    /// A line of text.
    static stDef_CgiReply s_F_o_Plain(int nStatus, const std::string& sText);
};
