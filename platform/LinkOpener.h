// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// Opens links in a web browser. Only addresses that checkedLink() passes are opened; each goes to
/// the browser as one argument, never through a shell.
class LinkOpener
{
public:
    virtual ~LinkOpener() = default;

    /// `browser` is the path of a desktop entry, empty for the system's default browser; one that
    /// cannot be started is replaced by the default. True when a browser took the address.
    virtual bool open(const QString &address, const QString &browser) = 0;
};

/// Starts browsers through the desktop's own launcher (GIO).
class DesktopLinkOpener final : public LinkOpener
{
public:
    bool open(const QString &address, const QString &browser) override;
};

/// Opens a text file with the application that the desktop has for it. False when there is none, or
/// when it could not be started.
bool openTextFile(const QString &path);

} // namespace qovelmor
