// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace qovelmor {

/// Says how far an import is and offers to break it off. It opens only when the import takes
/// longer than a moment, and takes keys and clicks while the rest of the program takes none.
class ImportPanel final : public QDialog
{
    Q_OBJECT

public:
    explicit ImportPanel(QWidget *parent);

    void begin(const QString &title, int total);
    /// The address that is fetched now, and which one of all it is.
    void showProgress(int number, const QString &sentence);
    void end();

    /// Escape, the button and the window's own close button.
    void reject() override;

Q_SIGNALS:
    void cancelled();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLabel *importText_;
    QProgressBar *importProgress_;
    QPushButton *actImportCancel_;
    QTimer opening_;
};

} // namespace qovelmor
