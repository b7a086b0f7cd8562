#pragma once

/// Marks of what leaves a library. Each library defines its own `..._BUILD` while it is compiled; what links the
/// objects of the libraries instead defines `FLEETLINK_STATIC`.
#if defined(_WIN32)
#define FLEETLINK_DLL_EXPORT __declspec(dllexport)
#ifdef FLEETLINK_STATIC
#define FLEETLINK_DLL_IMPORT
#else
#define FLEETLINK_DLL_IMPORT __declspec(dllimport)
#endif
#else
#define FLEETLINK_DLL_EXPORT __attribute__((visibility("default")))
#define FLEETLINK_DLL_IMPORT __attribute__((visibility("default")))
#endif

#ifdef LIB_BEDROCK_BUILD
#define LIB_BEDROCK_EXPORT FLEETLINK_DLL_EXPORT
#else
#define LIB_BEDROCK_EXPORT FLEETLINK_DLL_IMPORT
#endif

#ifdef LIB_HOSTENV_BUILD
#define LIB_HOSTENV_EXPORT FLEETLINK_DLL_EXPORT
#else
#define LIB_HOSTENV_EXPORT FLEETLINK_DLL_IMPORT
#endif

#ifdef LIB_LIVEFEED_BUILD
#define LIB_LIVEFEED_EXPORT FLEETLINK_DLL_EXPORT
#else
#define LIB_LIVEFEED_EXPORT FLEETLINK_DLL_IMPORT
#endif

#ifdef LIB_REWIND_BUILD
#define LIB_REWIND_EXPORT FLEETLINK_DLL_EXPORT
#else
#define LIB_REWIND_EXPORT FLEETLINK_DLL_IMPORT
#endif

#ifdef FLEETLINK_BUILD
#define FLEETLINK_EXPORT FLEETLINK_DLL_EXPORT
#else
#define FLEETLINK_EXPORT FLEETLINK_DLL_IMPORT
#endif
