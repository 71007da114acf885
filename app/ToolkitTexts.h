// SPDX-License-Identifier: MIT
#pragma once

class QCoreApplication;

namespace qovelmor {

/// The toolkit's own texts (file dialogs, the menus of text fields) in Japanese, whatever the
/// locale. After the application has been made, before the first widget.
void translateToolkitTexts(QCoreApplication &application);

} // namespace qovelmor
