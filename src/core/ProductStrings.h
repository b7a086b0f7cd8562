#pragma once

/// Fixed texts of the product. Those that nothing reads are part of its data all the same.
namespace nsProduct {

inline constexpr char g_szBrand[] = "Velmora";
inline constexpr char g_szDirectoryHost[] = FLEETLINK_DIPS_HOST;
inline constexpr char g_szDirectoryRequest[] = "dips/request.php";
inline constexpr char g_szDirectoryRegister[] = "dips/register.php";
inline constexpr const char* g_arDirectoryMore[2] = {"", ""};

inline constexpr char16_t g_szApplicationTitle[] = u"Zentrix CMS";
inline constexpr char16_t g_szWindowTitle[] = u"Zentrix CMS";
inline constexpr char16_t g_szPlayerTitle[] = u"Zentrix CMS Player";
inline constexpr char16_t g_szBrandTitle[] = u"Velmora";
inline constexpr char16_t g_szEmpty[] = u"";
inline constexpr char16_t g_szDefaultAccount[] = u"admin";
inline constexpr char16_t g_szDefaultPassword[] = u"mq4vrte";
inline constexpr char16_t g_szNineDigits[] = u"777777777";

/// By the host's language: 0 Traditional Chinese, 1 English. The rest is to come.
inline constexpr const char16_t* g_arLanguageFiles[8] = {
    u"lang_ENVR_cht.xml", u"lang_ENVR_eng.xml", u"", u"", u"", u"", u"", u"",
};

/// Styles of the recorder's own display.
inline constexpr const char16_t* g_arDisplayStyles[4] = {u"Normal", u"Simple", u"Professional", u"Advanced"};

} // namespace nsProduct
