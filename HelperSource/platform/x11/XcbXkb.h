#pragma once

// xcb's header of the XKB extension names a field with a word that C++ keeps for itself.
#pragma GCC system_header
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
