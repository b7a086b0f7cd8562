#pragma once

#include "core/CWndNvrShared.h"

/// One document of an embedded recorder, and how it is exchanged. URLs are relative to the recorder's root, as the
/// requests of a connection object take them.
struct stDef_Document
{
    stDef_Text stName; ///< the key is the document's name, whatever the language
    const char* pszFetch;
    int nFetchTimeoutMs;
    const char* pszPost = nullptr; ///< null: the recorder takes no such document
    int nPostTimeoutMs = 0;
    CXmlObj CWndNvrShared::*pMember = nullptr; ///< where the setting sheets have it; null: nowhere
};

namespace nsDocuments {

inline constexpr stDef_Document SystemInfo{
    Text{"SystemInfo", "System Information"}, "cgi-bin/param.cgi?action=systeminfo", 50000, nullptr, 0,
    &CWndNvrShared::vm_xmlSystemInfo};
inline constexpr stDef_Document LoginInfo{Text{"LoginInfo", "Login"}, "cgi-bin/logininfo.cgi", 30000};
inline constexpr stDef_Document System{Text{"System", "System"},
                                       "cgi-bin/SyncSetting.cgi?action=SystemXML",
                                       5000,
                                       "cgi-bin/SyncSetting.cgi?action=UpdateSystem",
                                       50000,
                                       &CWndNvrShared::vm_xmlSystem};
inline constexpr stDef_Document Schedule{Text{"Schedule", "Schedule"},
                                         "cgi-bin/SyncSetting.cgi?action=ScheduleXML",
                                         5000,
                                         "cgi-bin/SyncSetting.cgi?action=UpdateSchedule",
                                         50000,
                                         &CWndNvrShared::vm_xmlSchedule};
inline constexpr stDef_Document Camera{Text{"Camera", "Camera"},
                                       "cgi-bin/SyncSetting.cgi?action=CameraXML",
                                       5000,
                                       "cgi-bin/SyncSetting.cgi?action=UpdateCamera",
                                       50000,
                                       &CWndNvrShared::vm_xmlCamera};
inline constexpr stDef_Document EMail{Text{"EMail", "E-Mail"},
                                      "cgi-bin/SyncSetting.cgi?action=EMailXML",
                                      5000,
                                      "cgi-bin/SyncSetting.cgi?action=UpdateEMail",
                                      50000,
                                      &CWndNvrShared::vm_xmlEMail};

/// All of them in the order in which they are fetched. They are posted the other way round: a recorder takes its
/// settings over as they come, and System goes last.
inline constexpr stDef_Document All[] = {SystemInfo, LoginInfo, System, Schedule, Camera, EMail};

} // namespace nsDocuments
