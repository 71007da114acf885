// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>

namespace qovelmor {

/// The panel with the description of the message on display, as the main window and the window of
/// the on-screen board have it at their lower edge. It is shut until somebody opens it.
class DescriptionDrawer final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit DescriptionDrawer(const QString &name, QWidget *parent = nullptr);

    /// Taken as plain text, whatever it looks like, and without the marks that turn the direction
    /// of writing; of a description as long as a book the beginning and an ellipsis. Text that is
    /// there already stays where it was scrolled to.
    void showDescription(const QString &text);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void layOut();

    QString text_;
    bool isLaidOut_ = true;
};

} // namespace qovelmor
