// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QActionGroup;
class QMenu;

namespace qovelmor {

class MessageList;

/// The two menus that choose how text becomes dots: the font and the threshold ("boarder"). One
/// item of each carries the mark.
class BoardTextMenus final : public QObject
{
    Q_OBJECT

public:
    /// The menus belong to whoever puts them into another menu, or else to `parent`.
    BoardTextMenus(MessageList &msgList, QWidget &parent);

    QMenu *fontMenu() const { return fontMenu_; }
    QMenu *boarderMenu() const { return boarderMenu_; }

    /// Makes the font items; for each installed family that can draw "漢".
    void createFontMenu();
    /// Makes the threshold items and hands the stored threshold to the board.
    void createBoarderMenu();

private:
    void validateItems();

    MessageList &msgList_;
    QMenu *fontMenu_;
    QMenu *boarderMenu_;
    QActionGroup *fontItems_;
    QActionGroup *boarderItems_;
};

} // namespace qovelmor
