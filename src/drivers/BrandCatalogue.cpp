#include "drivers/BrandCatalogue.h"

// clang-format off
constinit const stDef_BrandRow g_astBrandCatalogue[11] = {
    { 8, "Velmora", "Velmora SDK1", "velmora", "*", "admin", "mq4vrte", 2, true,
      {{"RW-7301XT"}, {"QD-730"}, {"QC-530-KLM"}, {"QC-720"}, {"QB-520"}, {"QB-530"}}},
    { 9, "Velmora", "Velmora SDK2", "velmora", "+", "admin", "mq4vrte", 2, true,
      {{"WN-300AB"}, {"WN-300CD"}, {"WN-300EF"}}},
    { 7, "Velmora", "Velmora SDK3", "velmora", "=", "admin", "mq4vrte", 2, true, {{"QC-520"}}},
    { 6, "Velmora", "Velmora SDK4", "velmora", "#", "admin", "mq4vrte", 2, true,
      {{"QA-410"}, {"QB-410"}, {"QC-410"}}},
    {10, "Velmora", "Velmora SDK5", "velmora", "@", "admin", "mq4vrte", 2, true, {{"ZK-4040"}}},
    { 0, "Velmora", "Velmora SDK6", "velmora", "",  "admin", "mq4vrte", 0, true},
    // The maker's word stands in the marker's place here.
    { 2, "Velmora", "Velmora SDK7", "", "velmora",  "admin", "mq4vrte", 0, true},
    { 4, "ONVIF",   "ONVIF",        "",        "",  "admin", "",        1, true},
    { 1, "Velmora", "NVR",          "velmora", "",  "admin", "mq4vrte", 0, false},
    { 3, "TP_LINK", "TP_LINK",      "TP Link", "",  "admin", "vqzhk",   2, false,
      {{"TL-SC3171", "0"}, {"TL-SC3171G", "0"}}},
    { 5, "AXIS",    "AXIS",         "AXIS",    "",  "root",  "vqzhk",   2, false,
      {{"P3301", "0", true, true}, {"P1347", "0"}}},
};

constinit const stDef_ProductRow g_astProductTable[2] = {
    {"Ocular HD", 0, "admin", "mq4vrte", false},
    {"Zentrix",   1, "admin", "mq4vrte", true},
};
// clang-format on
