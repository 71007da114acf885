// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLineEdit;
class QListWidget;
class QTextBrowser;

namespace qovelmor {

/// The user guide in a window of its own: its chapters, its text with the pictures, and a field
/// that finds a word in it. The guide is a part of the program, so it is there without a network
/// and without a browser.
class GuideWindow final : public QWidget
{
    Q_OBJECT

public:
    GuideWindow();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void readGuide();
    void listChapters();
    void showChapter(int row);
    void findNext();

    QListWidget *guideChapters_;
    QTextBrowser *guideText_;
    QLineEdit *guideSearch_;
};

} // namespace qovelmor
