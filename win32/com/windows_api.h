// The one way win32/ includes <windows.h>: without min/max macros and the rarely used
// parts, so that names of the portable core stay usable beside it.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <oaidl.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
#include <windows.h>
