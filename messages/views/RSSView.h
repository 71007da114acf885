// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace qovelmor {

/// A view with one action, which a double click performs; everything else a click does stays as it
/// is in any view.
class RSSView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

Q_SIGNALS:
    void doubleClicked();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};

} // namespace qovelmor
