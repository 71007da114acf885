// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

namespace qovelmor {

class UserDefaults;

/// Remembers the place and the size of a window under a key of the store: a window gets back what
/// was stored when the keeper is made, and what it has is stored a moment after the user has moved
/// it and when it is hidden.
class PlaceKeeper final : public QObject
{
    Q_OBJECT

public:
    /// The window owns its keeper. Without a stored place the window keeps the size it has, as far
    /// as the screen has room for it, and stands where the window system puts it.
    PlaceKeeper(QWidget &window, UserDefaults &defaults, const QString &key);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void storePlace();

    QWidget &window_;
    UserDefaults &defaults_;
    const QString key_;
    QTimer settled_;
};

} // namespace qovelmor
