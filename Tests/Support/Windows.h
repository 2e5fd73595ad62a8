// The interface of Windows, without the macros that hide names of the tests.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined(_WIN32_WINNT) || _WIN32_WINNT < 0x0602 // the first version with GetCurrentThreadStackLimits
#undef _WIN32_WINNT
#define _WIN32_WINNT 0x0602
#endif
#include <windows.h>

constexpr DWORD WAITS_FOREVER = INFINITE;
#undef INFINITE
#undef far
#undef near
