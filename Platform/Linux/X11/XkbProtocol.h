#pragma once

#include <xcb/xcb.h>

// The header names struct members after a keyword of C++.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
