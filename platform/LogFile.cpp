// SPDX-License-Identifier: MIT
#include "platform/LogFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace qovelmor {

namespace {

constexpr int appendFlags =
    O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
constexpr mode_t everybodyReads = 0644;

bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.constData() + done,
                                      static_cast<std::size_t>(bytes.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

// Opens a plain file for appending, made when it is missing; -1 for anything else.
int openPlain(const QByteArray &name, int extraFlags)
{
    const int descriptor = ::open(name.constData(), appendFlags | extraFlags, everybodyReads);
    struct stat status = {};
    if (descriptor < 0 || (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)))
        return descriptor;
    ::close(descriptor);
    return -1;
}

} // namespace

std::shared_ptr<LogFile> LogFile::create(const QString &path, qint64 largest)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return nullptr;
    if (::unlink(name.constData()) != 0 && errno != ENOENT)
        return nullptr;
    const int descriptor = openPlain(name, O_EXCL);
    if (descriptor < 0)
        return nullptr;
    return std::shared_ptr<LogFile>(new LogFile(descriptor, path, largest));
}

LogFile::LogFile(int descriptor, QString path, qint64 largest)
    : descriptor_(descriptor), path_(std::move(path)), largest_(largest)
{}

LogFile::~LogFile()
{
    ::close(descriptor_);
}

bool LogFile::writeLine(const QByteArray &line)
{
    const std::lock_guard lock(mutex_);
    struct stat before = {};
    if (!followPath() || ::fstat(descriptor_, &before) != 0)
        return false;
    if (before.st_size + line.size() > largest_ && before.st_size > 0) {
        if (!setAside())
            return false;
        before.st_size = 0;
    }
    if (writeAll(descriptor_, line))
        return ::fdatasync(descriptor_) == 0;
    // What went through of a line on a full disk must not become the beginning of the next one;
    // where that cannot be undone either, the line is lost all the same.
    [[maybe_unused]] const int undone = ::ftruncate(descriptor_, before.st_size);
    return false;
}

// What fails for weeks must not fill the disk. Where the file cannot be kept under another name,
// its lines go: the newest are the ones that somebody will look for.
bool LogFile::setAside()
{
    const QByteArray name = QFile::encodeName(path_);
    if (::rename(name.constData(), (name + ".1").constData()) == 0)
        return followPath();
    return ::ftruncate(descriptor_, 0) == 0;
}

// A person may delete, move or replace the file while it is open: the line goes where they look.
bool LogFile::followPath()
{
    const QByteArray name = QFile::encodeName(path_);
    struct stat opened = {};
    struct stat named = {};
    if (::fstat(descriptor_, &opened) == 0 && ::lstat(name.constData(), &named) == 0 &&
        opened.st_ino == named.st_ino && opened.st_dev == named.st_dev)
        return true;
    const int descriptor = openPlain(name, 0);
    if (descriptor < 0)
        return false;
    ::close(descriptor_);
    descriptor_ = descriptor;
    return true;
}

} // namespace qovelmor
