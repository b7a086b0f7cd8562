#include "scene/CGstPlugins.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <gst/gst.h>
#include <mutex>

namespace {

struct stDef_Plugin
{
    const char* pszFile;
    const char* pszElement; ///< one that it brings
    const char* pszPackage;
};

constexpr stDef_Plugin g_arPlugins[] = {
    {"libgstcoreelements.so", "queue", "libgstreamer1.0-0"},
    {"libgstapp.so", "appsrc", "gstreamer1.0-plugins-base"},
    {"libgstrtp.so", "rtph264pay", "gstreamer1.0-plugins-good"},
    {"libgstrtpmanager.so", "rtpbin", "gstreamer1.0-plugins-good"},
    {"libgstudp.so", "udpsink", "gstreamer1.0-plugins-good"},
    {"libgstx264.so", "x264enc", "gstreamer1.0-plugins-ugly"},
};

// Plug-ins stand in a folder beside the library itself. Empty if they don't.
std::string PluginFolder()
{
    Dl_info stInfo{};
    if (dladdr(reinterpret_cast<void*>(&gst_init_check), &stInfo) == 0 || stInfo.dli_fname == nullptr)
        return {};
    std::error_code objIgnored;
    const auto pathFolder = std::filesystem::path(stInfo.dli_fname).parent_path() / "gstreamer-1.0";
    return std::filesystem::is_directory(pathFolder, objIgnored) ? pathFolder.string() + "/" : std::string();
}

bool HasElement(const char* pszElement)
{
    GstElementFactory* pFactory = gst_element_factory_find(pszElement);
    if (pFactory != nullptr)
        gst_object_unref(pFactory);
    return pFactory != nullptr;
}

std::string Load()
{
    const std::string sFolder = PluginFolder();
    if (!sFolder.empty())
        g_setenv("GST_REGISTRY_DISABLE", "yes", FALSE);
    GError* pError = nullptr;
    if (!gst_init_check(nullptr, nullptr, &pError)) {
        const std::string sReason = pError != nullptr ? pError->message : "unknown reason";
        g_clear_error(&pError);
        return "GStreamer can't be set up: " + sReason;
    }
    for (const stDef_Plugin& stPlugin : g_arPlugins) {
        if (!sFolder.empty() && !HasElement(stPlugin.pszElement)) {
            GstPlugin* pPlugin = gst_plugin_load_file((sFolder + stPlugin.pszFile).c_str(), nullptr);
            if (pPlugin != nullptr)
                gst_object_unref(pPlugin);
        }
        if (!HasElement(stPlugin.pszElement))
            return std::string("GStreamer has no ") + stPlugin.pszElement + "; install " + stPlugin.pszPackage;
    }
    return {};
}

} // namespace

bool CGstPlugins::s_F_b_Load(std::string& sError)
{
    static const std::string s_sMissing = Load();
    sError = s_sMissing;
    return sError.empty();
}
