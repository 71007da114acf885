// SPDX-License-Identifier: MIT
#pragma once

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace qovelmor {

namespace mounts {

inline bool writeFile(const char *path, const std::string &text)
{
    std::FILE *const file = std::fopen(path, "w");
    if (file == nullptr)
        return false;
    const bool isWritten = std::fputs(text.c_str(), file) >= 0;
    return std::fclose(file) == 0 && isWritten;
}

/// Of all that the superuser of a user name space may do, only to mount: what a test expects of
/// permissions holds as before.
inline bool keepMountingOnly()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    data[0].effective = data[0].permitted = 1U << CAP_SYS_ADMIN;
    return ::syscall(SYS_capset, &header, data) == 0;
}

} // namespace mounts

/// From now on this process may mount file systems, which nobody else sees and which go with it;
/// also without being the superuser, where the system lets users have name spaces. Called before
/// the process has a second thread.
inline bool enterOwnMounts()
{
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0)
        return ::unshare(CLONE_NEWNS) == 0 &&
               ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    const auto onlyOneself = [](unsigned id) {
        return std::to_string(id) + ' ' + std::to_string(id) + " 1\n";
    };
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
           mounts::writeFile("/proc/self/setgroups", "deny") &&
           mounts::writeFile("/proc/self/uid_map", onlyOneself(user)) &&
           mounts::writeFile("/proc/self/gid_map", onlyOneself(group)) &&
           mounts::keepMountingOnly();
}

/// The folder, as it is, can only be read from now on, until it is unmounted.
inline bool makeFolderReadOnly(const char *folder)
{
    struct statvfs status = {};
    if (::statvfs(folder, &status) != 0 || ::mount(folder, folder, nullptr, MS_BIND, nullptr) != 0)
        return false;
    // What the system has set on the folder's disk cannot be left out. The two sets of flags agree.
    constexpr unsigned long kept = MS_NOSUID | MS_NODEV | MS_NOEXEC | MS_NOATIME | MS_NODIRATIME;
    static_assert(int(ST_NOSUID) == int(MS_NOSUID) && int(ST_NODEV) == int(MS_NODEV) &&
                  int(ST_NOEXEC) == int(MS_NOEXEC) && int(ST_NOATIME) == int(MS_NOATIME));
    if (::mount(nullptr, folder, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | (status.f_flag & kept),
                nullptr) == 0)
        return true;
    ::umount(folder);
    return false;
}

} // namespace qovelmor
