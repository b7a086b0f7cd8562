#pragma once

#include <cstdint>

/// A model that is known of a brand. No behaviour goes by it: what a camera can do comes from the recorder.
struct stDef_BrandModel
{
    const char* strModel = "";
    const char* strExtra = "";
    bool bFlag1 = false;
    bool bFlag2 = false;
    std::int32_t nValue = 0;
};

/// One brand of cameras.
struct stDef_BrandRow
{
    std::int32_t nVendorID; ///< travels in requests and documents, and chooses the driver; 0 is a real brand
    const char* strVendorKey;
    const char* strName; ///< as the list of vendors shows it
    const char* strMakerWord;
    const char* strMarker;
    const char* strUser;
    const char* strPassword;
    std::int32_t nModelMode;             ///< 0..2
    bool bListed;                        ///< offered where a camera is added by hand
    stDef_BrandModel astModel[128] = {}; ///< ends at the first empty name
};

struct stDef_ProductRow
{
    const char* strName;
    std::int32_t nKind;
    const char* strUser;
    const char* strPassword;
    bool bPrimary;
};

/// All brands, in the order in which they are offered. Constant data: it is there before any code runs.
extern const stDef_BrandRow g_astBrandCatalogue[11];
extern const stDef_ProductRow g_astProductTable[2];
