#include "cgi/CClockCgi.h"

#include <cstdio>
#include <ctime>
#include <pugixml.hpp>
#include <sstream>

namespace {
/// A time that a calendar has, as "2027-03-14 02:00:00".
bool IsTime(const char* pszText)
{
    int nYear = 0, nMonth = 0, nDay = 0, nHour = 0, nMinute = 0, nSecond = 0, nRead = 0;
    if (std::sscanf(pszText, "%4d-%2d-%2d %2d:%2d:%2d%n", &nYear, &nMonth, &nDay, &nHour, &nMinute, &nSecond, &nRead) !=
            6 ||
        pszText[nRead] != '\0')
        return false;
    std::tm stTime{};
    stTime.tm_year = nYear - 1900;
    stTime.tm_mon = nMonth - 1;
    stTime.tm_mday = nDay;
    stTime.tm_hour = nHour;
    stTime.tm_min = nMinute;
    stTime.tm_sec = nSecond;
    const std::tm stAsked = stTime;
    ::timegm(&stTime); // brings what no calendar has to another day or hour
    return stTime.tm_mday == stAsked.tm_mday && stTime.tm_mon == stAsked.tm_mon && stTime.tm_hour == stAsked.tm_hour &&
           stTime.tm_min == stAsked.tm_min && stTime.tm_sec == stAsked.tm_sec;
}
} // namespace

std::vector<stDef_CgiRoute> CClockCgi::m_F_ar_Routes()
{
    return {{emDef_NvrKinds::Embedded, "POST", "cgi-bin/DateTimeSetting.cgi", "updatetime",
             std::bind_front(&CClockCgi::m_F_o_Set, this)}};
}

stDef_CgiReply CClockCgi::m_F_o_Set(const stDef_CgiRequest& stRequest)
{
    pugi::xml_document objAsked, objSystem;
    std::string sError;
    if (!CDocumentStore::s_F_b_Check(stRequest.sBody, sError))
        return stDef_CgiReply::s_F_o_Result(400, sError);
    objAsked.load_buffer(stRequest.sBody.data(), stRequest.sBody.size());
    const pugi::xml_node objTime = objAsked.select_node("//root/DateTime").node();
    if (!IsTime(objTime.attribute("ManuDateTime").value()))
        return stDef_CgiReply::s_F_o_Result(400, "ManuDateTime is no time");

    const std::string sSystem = vm_objDocuments.m_F_s_Get(emDef_Document::System);
    objSystem.load_buffer(sSystem.data(), sSystem.size(), pugi::parse_full);
    pugi::xml_node objOwn = objSystem.select_node("/root/system/DateTime").node();
    if (!objOwn) // of a document that was posted without one
        objOwn = objSystem.select_node("/root").node().append_child("system").append_child("DateTime");
    for (const char* const pszKey : {"NTPTimeZone", "isDaylight", "DaylightStart", "DaylightStop", "DaylightOffset"}) {
        pugi::xml_attribute objKey = objOwn.attribute(pszKey);
        (objKey ? objKey : objOwn.append_attribute(pszKey)).set_value(objTime.attribute(pszKey).value());
    }
    std::ostringstream objText;
    objSystem.save(objText, "  ");
    if (!vm_objDocuments.m_F_b_Put(emDef_Document::System, objText.str(), sError))
        return stDef_CgiReply::s_F_o_Result(400, sError);
    vm_fnRestart();
    return stDef_CgiReply::s_F_o_Result(200);
}
