// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPointer>
#include <QPushButton>

class QColorDialog;

namespace qovelmor {

/// A button that shows a colour; a click opens a panel to choose another one.
class ColorWell final : public QPushButton
{
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent = nullptr);

    void setColor(const QColor &color);

Q_SIGNALS:
    /// The panel was closed with a choice.
    void colorChosen(const QColor &color);

private:
    void openPanel();
    QIcon swatch() const;

    QColor color_;
    QPointer<QColorDialog> panel_;
};

} // namespace qovelmor
