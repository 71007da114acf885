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
    /// Deletes what stands at `path` (in a folder that exists), creates an empty file and opens it
    /// for writing. Null when that fails or when the path names something that is no plain file.
    static std::shared_ptr<LogFile> create(const QString &path);

    ~LogFile();
    LogFile(const LogFile &) = delete;
    LogFile &operator=(const LogFile &) = delete;

    /// Appends the bytes and syncs them (fdatasync), to a new file when the old one is no longer
    /// found under its name. False when not all of it reached the disk; then nothing of the line
    /// stays in the file. Any thread; lines never mix.
    bool writeLine(const QByteArray &line);

    const QString &path() const { return path_; }

private:
    LogFile(int descriptor, QString path);
    bool followPath();

    int descriptor_;
    QString path_;
    std::mutex mutex_;
};

} // namespace qovelmor
