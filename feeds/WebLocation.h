// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QMimeData;

namespace qovelmor {

// Files that hold one web address. Each function answers "" when the file is missing, no plain
// file, larger than 64 KiB, or holds no address.

/// A `.webloc` file: a property list in XML form with the address under "URL".
QString urlInWeblocFile(const QString &path);

/// A `.url` file (Internet shortcut): the entry "URL" of the group [InternetShortcut], whose names
/// are not case-sensitive.
QString urlInUrlFile(const QString &path);

/// A `.desktop` file (freedesktop.org Desktop Entry): the entry "URL" of the group [Desktop Entry]
/// where its type is "Link".
QString urlInDesktopFile(const QString &path);

/// The address in a link file of any of these kinds, told by the extension; "" for other files.
QString urlInLinkFile(const QString &path);

/// The text that a drop offers as a feed's address: for a link file the address in it, else the
/// first address as it was sent, or the first line of the text, without outer blanks.
QString droppedAddress(const QMimeData &data);

} // namespace qovelmor
