// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"

#include "app/VelmorRSS.h"
#include "messages/views/BoardTextMenus.h"
#include "platform/Localization.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

/// One item: its command's name, its text, its shortcut and what it calls.
struct MainMenu::Item
{
    QString name;
    QString textKey;
    QKeySequence keys;
    void (VelmorRSS::*command)();
};

MainMenu::MainMenu(QMenuBar &bar, VelmorRSS &control, MessageList &msgList)
    : QObject(&bar), control_(control), textMenus_(new BoardTextMenus(msgList, bar))
{
    QMenu *file = addMenu(bar, u"fileMenu"_s, u"MenuFile"_s);
    addItem(*file, {u"actGetRSS"_s, u"MenuReadFeeds"_s, Qt::Key_F5, &VelmorRSS::actGetRSS});
    file->addSeparator();
    endOfFeedItems_ = file->addSeparator();
    addItem(*file, {u"actQuit"_s, u"MenuQuit"_s, Qt::CTRL | Qt::Key_Q, &VelmorRSS::actQuit});

    QMenu *edit = addMenu(bar, u"editMenu"_s, u"MenuEdit"_s);
    addItem(*edit, {u"actCopyRow"_s, u"MenuCopyRow"_s, QKeySequence::Copy, &VelmorRSS::actCopyRow});
    edit->addSeparator();
    addItem(*edit, {u"actPreferences"_s, u"MenuPreferences"_s, Qt::CTRL | Qt::Key_Comma,
                    &VelmorRSS::actPreferences});

    tabMenu_ = addMenu(bar, u"viewMenu"_s, u"MenuView"_s);
    endOfTabItems_ = tabMenu_->addSeparator();
    addItem(*tabMenu_, {u"actSizeBigger"_s, u"MenuSizeBigger"_s, QKeySequence::ZoomIn,
                        &VelmorRSS::actSizeBigger});
    addItem(*tabMenu_, {u"actSizeSmaller"_s, u"MenuSizeSmaller"_s, QKeySequence::ZoomOut,
                        &VelmorRSS::actSizeSmaller});
    addItem(*tabMenu_, {u"actSizeOriginal"_s, u"MenuSizeOriginal"_s, Qt::CTRL | Qt::Key_0,
                        &VelmorRSS::actSizeOriginal});
    tabMenu_->addSeparator();
    addItem(*tabMenu_, {u"actDescriptionDrawer"_s, u"DescriptionButton"_s, Qt::CTRL | Qt::Key_I,
                        &VelmorRSS::actDescriptionDrawer});

    QMenu *display = addMenu(bar, u"displayMenu"_s, u"MenuDisplay"_s);
    addItem(*display, {u"actStartDisp"_s, u"MenuStartDisplay"_s, Qt::CTRL | Qt::Key_D,
                       &VelmorRSS::actStartDisp});
    addItem(*display, {u"actStopDisp"_s, u"MenuStopDisplay"_s, Qt::CTRL | Qt::Key_Period,
                       &VelmorRSS::actStopDisp});
    display->addSeparator();
    addItem(*display, {u"actOpenSelectedMessage"_s, u"MenuOpenMessage"_s, Qt::CTRL | Qt::Key_Return,
                       &VelmorRSS::actOpenSelectedMessage});
    addItem(*display, {u"actDisplayFromSelection"_s, u"MenuDisplayFromSelection"_s,
                       Qt::ALT | Qt::Key_Return, &VelmorRSS::actDisplayFromSelection});
    display->addSeparator();
    display->addMenu(textMenus_->fontMenu());
    display->addMenu(textMenus_->boarderMenu());

    windowMenu_ = addMenu(bar, u"windowMenu"_s, u"MenuWindow"_s);
    addItem(*windowMenu_,
            {u"actOpenMainWindow"_s, u"MenuMainWindow"_s, {}, &VelmorRSS::actOpenMainWindow});
    addItem(*windowMenu_, {u"actOpenLEDWindow"_s, u"MenuLEDWindow"_s, Qt::CTRL | Qt::Key_L,
                           &VelmorRSS::actOpenLEDWindow});

    QMenu *help = addMenu(bar, u"helpMenu"_s, u"MenuHelp"_s);
    QAction *guide = addPlainItem(*help, u"actGuide"_s, u"MenuGuide"_s);
    guide->setShortcut(QKeySequence::HelpContents);
    guide->setShortcutContext(Qt::ApplicationShortcut); // whichever window raises the question
    connect(guide, &QAction::triggered, this, &MainMenu::guideRequested);
    QAction *about = addPlainItem(*help, u"actAbout"_s, u"MenuAbout"_s);
    connect(about, &QAction::triggered, this, &MainMenu::aboutRequested);
}

QMenu *MainMenu::addMenu(QMenuBar &bar, const QString &name, const QString &textKey)
{
    QMenu *menu = bar.addMenu(localized(textKey));
    menu->setObjectName(name);
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::validateItems);
    return menu;
}

QAction *MainMenu::addPlainItem(QMenu &menu, const QString &name, const QString &textKey)
{
    QAction *action = menu.addAction(localized(textKey));
    action->setObjectName(name);
    items_.insert(name, action);
    return action;
}

void MainMenu::addItem(QMenu &menu, const Item &item)
{
    QAction *action = addPlainItem(menu, item.name, item.textKey);
    action->setShortcut(item.keys);
    connect(action, &QAction::triggered, this,
            [this, command = item.command] { std::invoke(command, control_); });
}

void MainMenu::addFeedItems(const QList<QAction *> &items)
{
    qobject_cast<QMenu *>(endOfFeedItems_->parent())->insertActions(endOfFeedItems_, items);
}

void MainMenu::addTabItem(QAction *item)
{
    tabMenu_->insertAction(endOfTabItems_, item);
}

void MainMenu::addWindowItem(QAction *item)
{
    windowMenu_->addAction(item);
}

void MainMenu::createTextMenus()
{
    textMenus_->createFontMenu();
    textMenus_->createBoarderMenu();
    validateItems();
}

void MainMenu::validateItems()
{
    for (auto item = items_.cbegin(); item != items_.cend(); ++item)
        item.value()->setEnabled(control_.validateMenuItem(item.key()));
    items_.value(u"actDescriptionDrawer"_s)->setText(control_.descriptionItemTitle());
}

} // namespace qovelmor
