// SPDX-License-Identifier: MIT
#include "platform/views/WideAlert.h"

#include <QGridLayout>
#include <QMessageBox>

namespace qovelmor {

namespace {

constexpr int widthOfSentence = 420;

} // namespace

void widen(QMessageBox &alert)
{
    if (auto *grid = qobject_cast<QGridLayout *>(alert.layout()))
        grid->addItem(new QSpacerItem(widthOfSentence, 0), grid->rowCount(), 0, 1,
                      grid->columnCount());
}

} // namespace qovelmor
