// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace qovelmor {

/// The dialog that asks for a feed's address. It stays open until the feed's name has been fetched,
/// and says meanwhile what it waits for.
class AddressPanel final : public QDialog
{
    Q_OBJECT

public:
    explicit AddressPanel(QWidget *parent);

    void openWith(const QString &title, const QString &address);
    void closePanel();
    /// Empty: nothing is being fetched any more.
    void showFetching(const QString &sentence);

    /// Escape, the second button and the window's own close button.
    void reject() override;

Q_SIGNALS:
    /// The text is given as it was typed.
    void addressEntered(const QString &address);
    void cancelled();

private:
    void updateButton();

    QLineEdit *addressText_;
    QLabel *waitText_;
    QPushButton *actAddressExec_;
    QPushButton *actAddressCancel_;
};

} // namespace qovelmor
