// SPDX-License-Identifier: MIT
#include "platform/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

class Descriptor
{
public:
    Descriptor(int number, FileCalls &calls) : number_(number), calls_(calls) {}
    ~Descriptor()
    {
        if (number_ >= 0)
            calls_.close(number_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

    int close()
    {
        const int number = number_;
        number_ = -1;
        return calls_.close(number);
    }

private:
    int number_;
    FileCalls &calls_;
};

// Opened without waiting (a FIFO would block), then looked at: 0 for a plain file.
int plainFileError(int descriptor, qint64 &size)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    size = status.st_size;
    return S_ISREG(status.st_mode) ? 0 : EINVAL;
}

int readAll(int descriptor, qint64 limit, QByteArray &bytes)
{
    constexpr qsizetype step = 256 * 1024;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + step);
        const ssize_t count = ::read(descriptor, bytes.data() + before, step);
        bytes.resize(before + std::max<ssize_t>(count, 0));
        if (count < 0 && errno != EINTR)
            return errno;
        if (bytes.size() > limit)
            return EFBIG;
        if (count == 0)
            return 0;
    }
}

int writeAll(int descriptor, const QByteArray &bytes, FileCalls &calls)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto left = static_cast<std::size_t>(bytes.size() - done);
        const ssize_t count = calls.write(descriptor, bytes.constData() + done, left);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 ? errno : ENOSPC;
        done += count;
    }
    return 0;
}

// Everything that must be true of the new file before it may take the old one's name.
int writeSynced(const QByteArray &path, const QByteArray &bytes, mode_t mode, FileCalls &calls)
{
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    Descriptor file(calls.open(path.constData(), flags, mode), calls);
    if (!file.isOpen())
        return errno;
    if (const int error = writeAll(file.number(), bytes, calls))
        return error;
    // A full small file system can take fewer bytes than it reports.
    const off_t size = calls.sizeOf(file.number());
    if (size != bytes.size())
        return size < 0 ? errno : ENOSPC;
    if (calls.sync(file.number()) != 0)
        return errno;
    return file.close() == 0 ? 0 : errno;
}

constexpr auto temporarySuffix = ".tmp"_L1;

QString temporaryPrefix(const QFileInfo &file)
{
    return u'.' + file.fileName() + u'.';
}

// `.<name>.<process>-<number>.tmp`: the process tells later whether somebody still writes it.
QString temporaryName(const QFileInfo &file)
{
    static std::atomic<unsigned> counter = 0;
    return file.absolutePath() + u'/' + temporaryPrefix(file) + QString::number(::getpid()) + u'-' +
           QString::number(counter++) + temporarySuffix;
}

mode_t modeOf(const QByteArray &path)
{
    struct stat status = {};
    constexpr mode_t ownerOnly = 0600;
    return ::stat(path.constData(), &status) == 0 ? (status.st_mode & 0777) : ownerOnly;
}

// Gives the present file the second name; the way over a temporary name replaces an older holder of
// it in one step. A missing copy is no reason to refuse the save.
void keepSecondName(const QString &path, const QString &second, FileCalls &calls)
{
    const QByteArray step = QFile::encodeName(temporaryName(QFileInfo(path)));
    if (calls.link(QFile::encodeName(path).constData(), step.constData()) != 0)
        return;
    const bool renamed = calls.rename(step.constData(), QFile::encodeName(second).constData()) == 0;
    // Renaming between two names of one file does nothing and leaves both.
    if (!renamed || ::access(step.constData(), F_OK) == 0)
        calls.unlink(step.constData());
}

bool processLives(qint64 process)
{
    return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

bool isStray(const QFileInfo &temporary, QStringView process)
{
    bool isNumber = false;
    const int number = process.toInt(&isNumber);
    if (!isNumber || number <= 0)
        return false;
    // Our own number can only come from an earlier process, and a save never takes an hour.
    constexpr qint64 hour = 3600;
    return number == ::getpid() || !processLives(number) ||
           temporary.lastModified().secsTo(QDateTime::currentDateTime()) > hour;
}

} // namespace

FileContent readWholeFile(const QString &path, qint64 limit)
{
    const QByteArray name = QFile::encodeName(path);
    Descriptor file(::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY),
                    FileCalls::system());
    if (!file.isOpen())
        return {{}, errno};
    qint64 size = 0;
    int error = plainFileError(file.number(), size);
    if (error == 0 && size > limit)
        error = EFBIG;
    FileContent content;
    if (error == 0) {
        content.bytes.reserve(size + 1);
        error = readAll(file.number(), limit, content.bytes);
    }
    return error == 0 ? content : FileContent{{}, error};
}

int writeWholeFile(const QString &path, const QByteArray &bytes)
{
    FileCalls &calls = FileCalls::system();
    const QByteArray name = QFile::encodeName(path);
    constexpr int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    Descriptor file(::open(name.constData(), flags, 0666), calls);
    if (!file.isOpen())
        return errno == ENXIO ? EINVAL : errno; // a FIFO that nobody reads
    qint64 size = 0;
    if (const int error = plainFileError(file.number(), size))
        return error;
    if (::ftruncate(file.number(), 0) != 0)
        return errno;
    if (const int error = writeAll(file.number(), bytes, calls))
        return error;
    if (calls.sync(file.number()) != 0)
        return errno;
    return file.close() == 0 ? 0 : errno;
}

QString linkTarget(const QString &path)
{
    constexpr int deepest = 40; // as the system itself follows links
    QString present = path;
    for (int i = 0; i < deepest; ++i) {
        QByteArray target(4096, Qt::Uninitialized);
        const ssize_t size = ::readlink(QFile::encodeName(present).constData(), target.data(),
                                        static_cast<std::size_t>(target.size()));
        if (size < 0)
            return present;
        const QString next = QFile::decodeName(target.first(size));
        present = QDir(QFileInfo(present).absolutePath()).absoluteFilePath(next);
    }
    return {};
}

int replaceFileDurably(const QString &path, const QByteArray &bytes, const QString &keepPrevious,
                       FileCalls &calls)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray temporary = QFile::encodeName(temporaryName(QFileInfo(path)));
    if (const int error = writeSynced(temporary, bytes, modeOf(name), calls)) {
        calls.unlink(temporary.constData());
        return error;
    }
    if (!keepPrevious.isEmpty())
        keepSecondName(path, keepPrevious, calls);
    if (calls.rename(temporary.constData(), name.constData()) != 0) {
        const int error = errno;
        calls.unlink(temporary.constData());
        return error;
    }
    return syncFolderOf(path, calls);
}

int syncFolderOf(const QString &path, FileCalls &calls)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    Descriptor descriptor(calls.open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0),
                          calls);
    if (!descriptor.isOpen() || calls.sync(descriptor.number()) != 0)
        return errno;
    return 0;
}

void removeStrayTemporaries(const QString &path)
{
    const QFileInfo file(path);
    const QString prefix = temporaryPrefix(file);
    const auto candidates =
        QDir(file.absolutePath()).entryInfoList({}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &candidate : candidates) {
        const QString name = candidate.fileName();
        if (!name.startsWith(prefix) || !name.endsWith(temporarySuffix))
            continue;
        const QStringView process = QStringView(name).sliced(prefix.size());
        if (isStray(candidate, process.first(std::max<qsizetype>(process.indexOf(u'-'), 0))))
            ::unlink(QFile::encodeName(candidate.absoluteFilePath()).constData());
    }
}

QString fileErrorText(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return u"ディスクに空きがありません"_s;
    case EACCES:
    case EPERM:
        return u"書き込みや読み込みが許可されていません"_s;
    case EROFS:
        return u"読み込み専用の場所です"_s;
    case ENOENT:
    case ENOTDIR:
        return u"ファイルまたはフォルダがありません"_s;
    case EFBIG:
        return u"ファイルが大きすぎます"_s;
    case EINVAL:
    case EISDIR:
        return u"通常のファイルではありません"_s;
    case EIO:
        return u"ディスクの読み書きでエラーが起きました"_s;
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

} // namespace qovelmor
