// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The path of a file that comes with the program, the two dot fonts above all.
///
/// Looked for in the folder that the variable QOVELMORRSS_RESOURCES names, then relative to the
/// running program: `resources/` beside it or one folder up (build tree), and
/// `../share/qovelmorrss/` (installed). The first place that holds the file wins; when none does,
/// the path in the first place is given, so that a message can name it.
QString resourcePath(const QString &fileName);

} // namespace qovelmor
