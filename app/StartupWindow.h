// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;

namespace qovelmor {

/// The small window that is shown while the settings are read and the feed list is built.
class StartupWindow final : public QWidget
{
    Q_OBJECT

public:
    StartupWindow();

    /// The feed that the start has come to, at once on the screen.
    void showAddress(const QString &address);

private:
    QLabel *accessField_;
};

} // namespace qovelmor
