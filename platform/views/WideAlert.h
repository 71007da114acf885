// SPDX-License-Identifier: MIT
#pragma once

class QMessageBox;

namespace qovelmor {

/// Gives an alert the width of a sentence. By itself it is as wide as its title, and a Japanese
/// sentence below a short title breaks every few words.
void widen(QMessageBox &alert);

} // namespace qovelmor
