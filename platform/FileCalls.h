// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace qovelmor {

/// The system calls of a durable save, as POSIX gives them (-1 and errno on failure). A seam: tests
/// let the n-th call fail, or cut the power there, and look at what is left on the disk.
class FileCalls
{
public:
    virtual ~FileCalls() = default;

    virtual int open(const char *path, int flags, mode_t mode);
    virtual ssize_t write(int descriptor, const void *bytes, std::size_t count);
    virtual off_t sizeOf(int descriptor);
    virtual int sync(int descriptor); ///< fsync
    virtual int close(int descriptor);
    virtual int rename(const char *from, const char *to);
    virtual int link(const char *from, const char *to);
    virtual int unlink(const char *path);

    /// The calls themselves.
    static FileCalls &system();
};

} // namespace qovelmor
