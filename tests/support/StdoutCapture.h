// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QTest>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

namespace qovelmor {

/// Takes over the process's standard output as long as it lives.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        std::fflush(stdout);
        store_ = memfd_create("stdout", MFD_CLOEXEC);
        saved_ = dup(STDOUT_FILENO);
        if (store_ < 0 || saved_ < 0 || dup2(store_, STDOUT_FILENO) < 0)
            qFatal("standard output cannot be redirected");
    }
    ~StdoutCapture()
    {
        // Among what was taken is the reason for which the test fails.
        if (saved_ >= 0 && QTest::currentTestFailed()) {
            const QByteArray said = text();
            std::fwrite(said.constData(), 1, static_cast<std::size_t>(said.size()), stdout);
        }
        restore();
        ::close(store_);
    }
    StdoutCapture(const StdoutCapture &) = delete;
    StdoutCapture &operator=(const StdoutCapture &) = delete;

    /// Gives standard output back and returns what was written to it meanwhile.
    QByteArray text()
    {
        restore();
        QByteArray bytes(lseek(store_, 0, SEEK_END), '\0');
        const ssize_t count =
            pread(store_, bytes.data(), static_cast<std::size_t>(bytes.size()), 0);
        bytes.resize(count < 0 ? 0 : count);
        return bytes;
    }

private:
    void restore()
    {
        if (saved_ < 0)
            return;
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        ::close(saved_);
        saved_ = -1;
    }

    int store_ = -1;
    int saved_ = -1;
};

} // namespace qovelmor
