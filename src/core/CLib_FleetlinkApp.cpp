#include "core/CLib_FleetlinkApp.h"

CLib_FleetlinkApp g_objApp;

bool CLib_FleetlinkApp::InitInstance()
{
    return true;
}
