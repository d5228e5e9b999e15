// The system's headers, in the one order that they can be included in.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// clang-format off
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <commctrl.h>
// clang-format on
