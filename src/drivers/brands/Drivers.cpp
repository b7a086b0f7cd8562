#include "drivers/brands/Drivers.h"

#include <algorithm>

#include "core/CWndNvrBase.h"

namespace {

template <class Driver>
CCamObj_Base* Make()
{
    return new Driver;
}

// Vendors 1, 3 and 5 have no driver.
constexpr stDef_Driver g_astDrivers[] = {
    {0, Make<CCamObj_AMTKV5>}, {2, Make<CCamObj_AMTKV6>}, {4, Make<CCamObj_ONVIF>},  {6, Make<CCamObj_ZAVIO>},
    {7, Make<CCamObj_SMAX>},   {8, Make<CCamObj_FITI>},   {9, Make<CCamObj_PIXORD>}, {10, Make<CCamObj_DYNACOLOR>},
};

} // namespace

std::span<const stDef_Driver> DriverList()
{
    return g_astDrivers;
}

CCamObj_Base* CCamObj_Base::s_F_p_CreateCamObj(int nVendorID, CWndNvrBase* pNvr)
{
    const auto IsVendor = [nVendorID](const stDef_Driver& st) { return st.nVendorID == nVendorID; };
    const auto pDriver = std::find_if(std::begin(g_astDrivers), std::end(g_astDrivers), IsVendor);
    if (pDriver == std::end(g_astDrivers))
        return nullptr;
    CCamObj_Base* const pCamera = pDriver->fnMake();
    pCamera->m_pNvr = pNvr;
    pCamera->m_pEnv = pNvr ? pNvr->vm_pEnv : nullptr;
    return pCamera;
}
