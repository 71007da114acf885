// SPDX-License-Identifier: MIT
#include "platform/views/PlainAlert.h"

#include <QLabel>
#include <QMessageBox>

namespace qovelmor {

// The box's own setTextFormat() leaves out the informative text, which would still be read as
// mark-up and open links.
void keepTextsPlain(QMessageBox &alert)
{
    for (QLabel *label : alert.findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
}

} // namespace qovelmor
