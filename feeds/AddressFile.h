// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace qovelmor {

/// The feed list's export file: a property list in XML form whose root is an array of strings, the
/// addresses in list order and nothing else. Any property list reader can read it.

/// The extension of such files, "rssurl".
QString addressFileType();

/// The path with its extension replaced by "rssurl", or with that added when it has none.
QString addressFilePath(const QString &chosenPath);

/// The addresses in the file that the chosen path stands for (see addressFilePath()); entries that
/// are no strings are left out. Nothing when the file cannot be read or holds no array.
std::optional<QStringList> readAddressFile(const QString &chosenPath);

/// Writes the file in place, without a temporary one. False when not all of it was written; nothing
/// is when the list is too long to be read again.
bool writeAddressFile(const QString &chosenPath, const QStringList &addresses);
/// Whether no file can hold the list: readAddressFile() would refuse it.
bool isTooLongForAddressFile(const QStringList &addresses);

} // namespace qovelmor
