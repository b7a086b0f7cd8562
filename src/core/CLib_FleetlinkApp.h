#pragma once

/// The library's application object: one global, made when the library is loaded. It has no start-up or exit work. The
/// library's window resources register themselves as it is loaded, so no operation has to select them first.
class CLib_FleetlinkApp
{
public:
    bool InitInstance(); ///< always true
};

extern CLib_FleetlinkApp g_objApp;
