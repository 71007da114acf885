// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <mutex>

namespace qovelmor {

/// The open log book. Shared by whoever writes; each line is on the disk when writeLine returns.
class LogFile
{
public:
    /// Months of an ordinary day's lines; days of a board that never answers.
    static constexpr qint64 defaultLargest = 32 * 1024 * 1024;

    /// Deletes what stands at `path` (in a folder that exists), creates an empty file and opens it
    /// for writing. Null when that fails or when the path names something that is no plain file.
    /// `largest` bounds the file: before a line that would make it larger it is set aside as
    /// "<path>.1", in place of the one set aside before it.
    static std::shared_ptr<LogFile> create(const QString &path, qint64 largest = defaultLargest);

    ~LogFile();
    LogFile(const LogFile &) = delete;
    LogFile &operator=(const LogFile &) = delete;

    /// Appends the bytes and syncs them (fdatasync), to a new file when the old one is no longer
    /// found under its name. False when not all of it reached the disk; then nothing of the line
    /// stays in the file. Any thread; lines never mix.
    bool writeLine(const QByteArray &line);

    const QString &path() const { return path_; }

private:
    LogFile(int descriptor, QString path, qint64 largest);
    bool followPath();
    bool setAside();

    int descriptor_;
    QString path_;
    qint64 largest_;
    std::mutex mutex_;
};

} // namespace qovelmor
