// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace qovelmor {

/// Takes the superuser's rights from the calling thread; others never have them.
class NoPrivileges
{
public:
    NoPrivileges() { become(nobody); }
    ~NoPrivileges() { become(0); }
    NoPrivileges(const NoPrivileges &) = delete;
    NoPrivileges &operator=(const NoPrivileges &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    // The library's own call would change every thread.
    void become(uid_t user) const
    {
        if (isSuperuser_ && syscall(SYS_setresuid, user, user, -1) != 0)
            qFatal("the user does not change");
    }

    const bool isSuperuser_ = geteuid() == 0;
};

/// While it lives the system gives the calling thread no further thread.
class NoMoreThreads
{
public:
    NoMoreThreads()
    {
        getrlimit(RLIMIT_NPROC, &before_);
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_NPROC, &none);
    }
    ~NoMoreThreads() { setrlimit(RLIMIT_NPROC, &before_); }
    NoMoreThreads(const NoMoreThreads &) = delete;
    NoMoreThreads &operator=(const NoMoreThreads &) = delete;

private:
    rlimit before_{};
    NoPrivileges noPrivileges_; // the limit does not hold for the superuser
};

} // namespace qovelmor
