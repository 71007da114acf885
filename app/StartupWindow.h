// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace qovelmor {

/// The small window that is shown while the settings are read and the feed list is built.
class StartupWindow final : public QWidget
{
    Q_OBJECT

public:
    StartupWindow();
};

} // namespace qovelmor
