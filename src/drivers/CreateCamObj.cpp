#include "core/CWndNvrBase.h"
#include "drivers/CCamObj_AMTKV5.h"
#include "drivers/CCamObj_AMTKV6.h"
#include "drivers/CCamObj_DYNACOLOR.h"
#include "drivers/CCamObj_FITI.h"
#include "drivers/CCamObj_ONVIF.h"
#include "drivers/CCamObj_PIXORD.h"
#include "drivers/CCamObj_SMAX.h"
#include "drivers/CCamObj_ZAVIO.h"

namespace {

template <class Driver>
CCamObj_Base* Make()
{
    return new Driver;
}

// Vendors 1, 3 and 5 have no driver.
const struct
{
    int nVendorID;
    CCamObj_Base* (*fnMake)();
} g_astDrivers[] = {
    {0, Make<CCamObj_AMTKV5>}, {2, Make<CCamObj_AMTKV6>}, {4, Make<CCamObj_ONVIF>},  {6, Make<CCamObj_ZAVIO>},
    {7, Make<CCamObj_SMAX>},   {8, Make<CCamObj_FITI>},   {9, Make<CCamObj_PIXORD>}, {10, Make<CCamObj_DYNACOLOR>},
};

} // namespace

CCamObj_Base* CCamObj_Base::s_F_p_CreateCamObj(int nVendorID, CWndNvrBase* pNvr)
{
    for (const auto& stDriver : g_astDrivers) {
        if (stDriver.nVendorID != nVendorID)
            continue;
        CCamObj_Base* const pCamera = stDriver.fnMake();
        pCamera->m_pNvr = pNvr;
        pCamera->m_pEnv = pNvr ? pNvr->vm_pEnv : nullptr;
        return pCamera;
    }
    return nullptr;
}
