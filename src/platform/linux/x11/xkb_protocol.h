#pragma once

#include <xcb/xcb.h>

// The header has a member that is named like a keyword of C++.
#define explicit explicit_ // NOLINT(clang-diagnostic-keyword-macro)
#include <xcb/xkb.h>
#undef explicit
