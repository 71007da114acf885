// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <memory>

namespace qovelmor {

/// Owners of what GIO hands out.
struct GioUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using GioPointer = std::unique_ptr<Object, GioUnref>;

struct GioFree
{
    void operator()(gpointer memory) const { g_free(memory); }
};
using GioText = std::unique_ptr<char, GioFree>;

} // namespace qovelmor
