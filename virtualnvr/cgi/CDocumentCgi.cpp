#include "cgi/CDocumentCgi.h"

std::vector<stDef_CgiRoute> CDocumentCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    using enum emDef_Document;
    constexpr std::string_view sSync = "cgi-bin/SyncSetting.cgi";
    const auto get = [this](emDef_Document e) { return [this, e](const stDef_CgiRequest&) { return m_F_o_Get(e); }; };
    const auto put = [this](emDef_Document e) {
        return [this, e](const stDef_CgiRequest& stRequest) { return m_F_o_Put(e, stRequest.sBody); };
    };
    return {
        {Embedded, "GET", sSync, "SystemXML", get(System)},
        {Embedded, "GET", sSync, "ScheduleXML", get(Schedule)},
        {Embedded, "GET", sSync, "CameraXML", get(Camera)},
        {Embedded, "GET", sSync, "EMailXML", get(EMail)},
        {Embedded, "POST", sSync, "UpdateSystem", put(System)},
        {Embedded, "POST", sSync, "UpdateSchedule", put(Schedule)},
        {Embedded, "POST", sSync, "UpdateCamera", put(Camera)},
        {Embedded, "POST", sSync, "UpdateEMail", put(EMail)},
        {PC, "GET", "cgi-bin/CMS.cgi", "CamXml", get(Camera)},
    };
}

stDef_CgiReply CDocumentCgi::m_F_o_Get(emDef_Document eDocument) const
{
    return stDef_CgiReply::s_F_o_Envelope(vm_objDocuments.m_F_s_Get(eDocument));
}

stDef_CgiReply CDocumentCgi::m_F_o_Put(emDef_Document eDocument, const std::string& sText)
{
    std::string sError;
    const bool bStored = vm_objDocuments.m_F_b_Put(eDocument, sText, sError);
    return stDef_CgiReply::s_F_o_Result(bStored ? 200 : 400, sError);
}
