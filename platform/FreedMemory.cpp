// SPDX-License-Identifier: MIT
#include "platform/FreedMemory.h"

#include <malloc.h>

namespace qovelmor {

namespace {

constexpr int mebibyte = 1024 * 1024;

} // namespace

void keepLittleFreedMemory()
{
    ::mallopt(M_MMAP_THRESHOLD, mebibyte);
    ::mallopt(M_TRIM_THRESHOLD, 4 * mebibyte);
}

void returnFreedMemory()
{
    ::malloc_trim(0);
}

} // namespace qovelmor
