// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace qovelmor {

/// One line of plain text with one action, which a double click performs. A text that is longer
/// than the field ends in an ellipsis and stands whole in the tooltip.
class RSSTextField : public QLabel
{
    Q_OBJECT

public:
    explicit RSSTextField(const QString &name, QWidget *parent = nullptr);

    /// Shown on one line, without marks that turn the direction of writing.
    void showText(const QString &text);

    /// The tooltip of a text that is shown whole.
    void setHint(const QString &hint);

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void noteWhatIsHidden();

    QString hint_;
};

} // namespace qovelmor
