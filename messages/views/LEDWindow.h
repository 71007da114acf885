// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QList>
#include <QRect>
#include <QTimer>
#include <QWidget>

class QSplitter;

namespace qovelmor {

class DescriptionDrawer;
class OnScreenBoard;
class OnScreenBoardView;
class UserDefaults;

/// The window of the on-screen board, with a panel for the description of the message on display at
/// its lower edge. It remembers where it stood and how high the panel was.
///
/// The user's wish to close it becomes a signal, because closing moves the output as well; a
/// close() by the program just closes it.
class LEDWindow final : public QWidget
{
    Q_OBJECT

public:
    /// The board and the store must outlive the window.
    LEDWindow(OnScreenBoard &board, UserDefaults &defaults, QWidget *parent = nullptr);
    ~LEDWindow() override;

    OnScreenBoardView &boardView() const { return *boardView_; }

    /// The panel opens below the board: the window grows and shrinks with it.
    void setDrawerOpen(bool open);
    bool isDrawerOpen() const;

    /// Shows the window where it stood last; the first time beside another one, not on top of it.
    void showBeside(const QRect &other, const QRect &screen);

    /// Taken as plain text, whatever it looks like.
    void setDescription(const QString &text);

Q_SIGNALS:
    void boardDoubleClicked();
    void closeRequested();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void addItem(const QString &name, const QString &textKey, const QList<QKeySequence> &keys,
                 void (LEDWindow::*request)());
    int roomBelow() const;
    int heightOfOpenDrawer() const;
    void noteDrawerHeight();
    void restorePlace();
    void takeFirstPlace();
    void storePlace();
    void storePlaceLater();

    OnScreenBoard &board_;
    UserDefaults &defaults_;
    OnScreenBoardView *boardView_;
    DescriptionDrawer *ledDrawer_;
    QSplitter *splitter_;
    QTimer settled_;
    int drawerHeight_;
    QRect other_; ///< empty: the window system chooses the first place
    QRect screen_;
    bool isPlaced_ = false;
};

} // namespace qovelmor
