// SPDX-License-Identifier: MIT
#include "messages/views/BoardTextMenus.h"

#include "messages/FontMenu.h"
#include "messages/MessageList.h"
#include "platform/Localization.h"

#include <QActionGroup>
#include <QMenu>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// A family's name is no mnemonic text.
QString plainTitle(QString title)
{
    return title.replace(u'&', u"&&"_s);
}

QAction *addItem(QMenu &menu, QActionGroup &group, const QString &name, const QString &title,
                 const QVariant &value, bool isChecked)
{
    QAction *item = menu.addAction(title);
    item->setObjectName(name);
    item->setData(value);
    item->setCheckable(true);
    item->setChecked(isChecked);
    group.addAction(item);
    return item;
}

void removeItems(QActionGroup &group)
{
    qDeleteAll(group.actions());
}

} // namespace

BoardTextMenus::BoardTextMenus(MessageList &msgList, QWidget &parent)
    : QObject(&parent)
    , msgList_(msgList)
    , fontMenu_(new QMenu(localized(u"MenuBoardFont"_s), &parent))
    , boarderMenu_(new QMenu(localized(u"MenuBoardBoarder"_s), &parent))
    , fontItems_(new QActionGroup(this))
    , boarderItems_(new QActionGroup(this))
{
    fontMenu_->setObjectName(u"fontMenu"_s);
    boarderMenu_->setObjectName(u"boarderMenu"_s);
    connect(fontItems_, &QActionGroup::triggered, this,
            [this](const QAction *item) { msgList_.actFontItem(item->data().toString()); });
    connect(boarderItems_, &QActionGroup::triggered, this,
            [this](const QAction *item) { msgList_.actBoarderItem(item->data().toInt()); });
    connect(fontMenu_, &QMenu::aboutToShow, this, &BoardTextMenus::validateItems);
    connect(boarderMenu_, &QMenu::aboutToShow, this, &BoardTextMenus::validateItems);
}

void BoardTextMenus::createFontMenu()
{
    removeItems(*fontItems_);
    for (const FontItem &font : qovelmor::createFontMenu(msgList_.switches()->fontName))
        addItem(*fontMenu_, *fontItems_, u"actFontItem"_s, plainTitle(font.title), font.fontName,
                font.isChecked);
    validateItems();
}

void BoardTextMenus::createBoarderMenu()
{
    removeItems(*boarderItems_);
    for (const BoarderItem &boarder : msgList_.createBoarderMenu())
        addItem(*boarderMenu_, *boarderItems_, u"actBoarderItem"_s,
                QString::number(boarder.threshold), boarder.threshold, boarder.isChecked);
    validateItems();
}

void BoardTextMenus::validateItems()
{
    fontItems_->setEnabled(msgList_.isFontItemEnabled());
    boarderItems_->setEnabled(msgList_.isBoarderItemEnabled());
}

} // namespace qovelmor
