// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace qovelmor {

/// The names of the WAV files in the program's own sound folder and the system's (below the data
/// folders of XDG Base Directory), without their extension, own ones first.
QStringList soundNames();

/// The file of a sound; nothing when no folder holds it.
std::optional<QString> pathOfSound(const QString &name);

} // namespace qovelmor
