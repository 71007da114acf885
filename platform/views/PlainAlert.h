// SPDX-License-Identifier: MIT
#pragma once

class QMessageBox;

namespace qovelmor {

/// Makes every text of an alert show as it is written, whatever mark-up it holds. To be called when
/// the alert has all its texts.
void keepTextsPlain(QMessageBox &alert);

} // namespace qovelmor
