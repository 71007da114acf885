// SPDX-License-Identifier: MIT
#include "platform/FileCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qovelmor {

int FileCalls::open(const char *path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileCalls::write(int descriptor, const void *bytes, std::size_t count)
{
    return ::write(descriptor, bytes, count);
}

off_t FileCalls::sizeOf(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

int FileCalls::sync(int descriptor)
{
    return ::fsync(descriptor);
}

int FileCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int FileCalls::rename(const char *from, const char *to)
{
    return ::rename(from, to);
}

int FileCalls::link(const char *from, const char *to)
{
    return ::link(from, to);
}

int FileCalls::unlink(const char *path)
{
    return ::unlink(path);
}

FileCalls &FileCalls::system()
{
    static FileCalls calls; // holds no state
    return calls;
}

} // namespace qovelmor
