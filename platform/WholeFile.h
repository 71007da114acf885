// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileCalls.h"

#include <QByteArray>
#include <QString>

namespace qovelmor {

/// Reading and writing files in one piece, bounded, and only plain files: a FIFO or a device is
/// refused at once instead of being waited for.

/// What reading gave. `error` is an errno value, 0 when `bytes` is the whole file. A name that
/// stands for no plain file gives EINVAL (EISDIR for a folder), a file over the limit EFBIG.
struct FileContent
{
    QByteArray bytes;
    int error = 0;
};

/// Reads all of `path`, at most `limit` bytes.
FileContent readWholeFile(const QString &path, qint64 limit);

/// Writes `path` in place (an export that a person asked for): an existing file is cut and written
/// anew. Gives 0, or the errno value of what failed.
int writeWholeFile(const QString &path, const QByteArray &bytes);

/// Where `path` leads when it is a symbolic link (followed to its end, whether or not the last name
/// exists); `path` itself when it is none. Empty for a circle of links.
QString linkTarget(const QString &path);

/// Replaces `path` durably: the bytes go to a temporary file beside it, are counted and synced, and
/// take its name in one step; then the folder is synced. Whatever fails or whenever the power goes,
/// `path` holds all of the old or all of the new content. With `keepPrevious` not empty, the
/// content replaced keeps that second name (where the file system has hard links; else there is
/// none). Gives 0, or the errno value of what failed. `path` must not be a symbolic link.
int replaceFileDurably(const QString &path, const QByteArray &bytes, const QString &keepPrevious,
                       FileCalls &calls);

/// Makes the names in the folder of `path` durable. Gives 0 or an errno value.
int syncFolderOf(const QString &path, FileCalls &calls);

/// Deletes the temporary files that saves of `path` by dead processes left behind.
void removeStrayTemporaries(const QString &path);

/// The errno value of a file operation as a Japanese clause for the user.
QString fileErrorText(int error);

} // namespace qovelmor
