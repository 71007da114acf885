// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileCalls.h"

#include <QFile>

#include <fcntl.h>

#include <cerrno>
#include <map>
#include <string>

namespace qovelmor {

/// The n-th call (counted from 1) fails with an error. With `isCut`, the power goes at that call:
/// it and all later calls do nothing, and what was written but not synced is lost.
class FailingCalls final : public FileCalls
{
public:
    FailingCalls(int failingCall, int error, bool isCut = false)
        : left_(failingCall), error_(error), isCut_(isCut)
    {}

    bool hasFailed() const { return left_ <= 0; }

    int open(const char *path, int flags, mode_t mode) override
    {
        if (fails())
            return -1;
        const int descriptor = FileCalls::open(path, flags, mode);
        if (descriptor >= 0 && (flags & O_CREAT) != 0)
            unsynced_[descriptor] = path;
        return descriptor;
    }
    // Half of the bytes at a time: a short write is no failure by itself.
    ssize_t write(int descriptor, const void *bytes, std::size_t count) override
    {
        return fails() ? -1 : FileCalls::write(descriptor, bytes, (count + 1) / 2);
    }
    off_t sizeOf(int descriptor) override { return fails() ? -1 : FileCalls::sizeOf(descriptor); }
    int sync(int descriptor) override
    {
        if (fails())
            return -1;
        unsynced_.erase(descriptor);
        return FileCalls::sync(descriptor);
    }
    int close(int descriptor) override
    {
        const bool isFailing = fails();
        FileCalls::close(descriptor); // also when it reports an error
        return isFailing ? -1 : 0;
    }
    int rename(const char *from, const char *to) override
    {
        return fails() ? -1 : FileCalls::rename(from, to);
    }
    int link(const char *from, const char *to) override
    {
        return fails() ? -1 : FileCalls::link(from, to);
    }
    int unlink(const char *path) override { return fails() ? -1 : FileCalls::unlink(path); }

private:
    bool fails()
    {
        --left_;
        if (left_ > 0 || (left_ < 0 && !isCut_))
            return false;
        if (left_ == 0 && isCut_) {
            for (const auto &[descriptor, path] : unsynced_)
                QFile::resize(QString::fromStdString(path), 0);
        }
        errno = error_;
        return true;
    }

    int left_;
    int error_;
    bool isCut_;
    std::map<int, std::string> unsynced_;
};

} // namespace qovelmor
