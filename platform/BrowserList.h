// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace qovelmor {

/// An installed web browser: its name in the user's language and the path of its desktop entry
/// (freedesktop.org Desktop Entry), as LinkOpener takes it.
struct BrowserEntry
{
    QString name;
    QString desktopFile;
};

/// The visible desktop entries that say they handle `http` addresses and take an address on their
/// command line, sorted by name.
std::vector<BrowserEntry> installedBrowsers();

} // namespace qovelmor
