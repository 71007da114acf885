// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>

namespace qovelmor {

/// The user's information messages: the lines of "Information.txt", a Shift_JIS text in the user's
/// document folder. Line 0 is the title line of a read cycle; the others stand in turn before the
/// headlines. Any thread; loading belongs to the main thread.
class InformationFile
{
public:
    /// What stands before the next headline.
    struct Interleaved
    {
        enum class Kind { Nothing, IndexError, Line } kind = Kind::Nothing;
        QString line; ///< may be empty: then the turn passes without a message
    };

    /// The largest file that is read: a text for a sign is a few lines.
    static constexpr qint64 sizeLimit = 1 << 20;

    /// `templatePath` is the file that a user who has none starts with.
    InformationFile(QString folder, QString templatePath);

    /// Loads (or drops) the lines and begins again at line 1. A missing folder or file is made.
    /// False when the file could not be read or is no Shift_JIS: then there are no lines.
    bool prepareInfoMessages(bool load);

    /// The title line; empty when there is none.
    QString titleLine() const;

    Interleaved interleaved() const;
    /// The line of interleaved() has had its turn.
    void advance();

    QStringList infoMessages() const;
    int presentInfo() const;
    void setPresentInfo(int index);

    QString path() const;

private:
    bool makeReady() const;
    std::optional<QStringList> readLines() const;

    const QString folder_;
    const QString templatePath_;
    mutable std::mutex mutex_;
    QStringList infoMessages_;
    int presentInfo_ = 1;
};

} // namespace qovelmor
