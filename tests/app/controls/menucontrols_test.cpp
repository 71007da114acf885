// SPDX-License-Identifier: MIT
#include "MenuTable.h"
#include "WindowControls.h"
#include "app/TrayIcon.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTimer>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The program with its icon in the tray.
struct AllMenus : AllWindows
{
    explicit AllMenus(bool withBoard = false)
        : AllWindows(withBoard)
        , tray({item(restingItem), item(u"actOpenLEDWindow"_s), item(u"actStartDisp"_s),
                item(u"actStopDisp"_s), item(u"actQuit"_s)})
    {
        QObject::connect(&tray, &TrayIcon::menuOpens, &mainWindow.menu(), &MainMenu::validateItems);
    }
    QMenu *menu(const QString &name) { return find<QMenu>(name); }

    TrayIcon tray;
};

QList<QAction *> itemsOf(const QList<QAction *> &actions)
{
    QList<QAction *> items = actions;
    items.removeIf([](const QAction *one) { return one->isSeparator() || one->menu(); });
    return items;
}

QAction *itemOf(const QList<QAction *> &actions, const MenuItem &row)
{
    QList<QAction *> named = actions;
    named.removeIf([&row](const QAction *one) { return one->objectName() != row.name; });
    return named.value(row.number);
}

/// In the menu that is open: by the letter of the item, or with the arrows where it has none.
void choose(const QAction &item)
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY2(menu, qPrintable(item.text()));
    const QString letter = mnemonicOf(item.text()).right(1);
    if (!letter.isEmpty()) {
        QTest::keyClick(menu, letter.front().toLatin1());
        return;
    }
    for (int steps = 0; menu->activeAction() != &item && steps <= menu->actions().size(); ++steps)
        QTest::keyClick(menu, Qt::Key_Down);
    QCOMPARE(menu->activeAction(), &item);
    QTest::keyClick(menu, Qt::Key_Return);
}

/// Alt and the letter of the menu, then further letters.
void chooseInBar(AllMenus &p, const QString &name, const QAction &item)
{
    QMenu *menu = p.menu(name);
    QMenu *top = menu;
    for (const QAction *entry : p.mainWindow.menuBar()->actions()) {
        if (entry->menu()->actions().contains(menu->menuAction()))
            top = entry->menu();
    }
    const QString letter = mnemonicOf(top->title()).right(1);
    QTest::keyClick(&p.mainWindow, letter.front().toLatin1(), Qt::AltModifier);
    if (top != menu)
        choose(*menu->menuAction());
    choose(item);
}

} // namespace

/// Every item of every menu stands in a table and keeps to it, chosen by keys alone.
class MenuControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyItemIsInTheTable();
    void everyItemSaysWhatItIs();
    void lettersAreUnique();
    void shortcutsAreUnique();
    void barItemsDoWhatTheTableSays_data() { eachItem(barItems()); }
    void barItemsDoWhatTheTableSays();
    void trayItemsDoWhatTheTableSays_data() { eachItem(trayItems()); }
    void trayItemsDoWhatTheTableSays();
    void rowItemsDoWhatTheTableSays_data() { eachItem(rowItems()); }
    void rowItemsDoWhatTheTableSays();

private:
    using Way = std::function<void(AllMenus &, const QAction &)>;

    static void eachItem(const std::vector<MenuItem> &items);
    /// Observes the effect of a row when its item is chosen: by the menu, or by its shortcut.
    static void expectEffect(AllMenus &p, const MenuItem &row, QAction &item, const Way &choose);
    /// Every menu with its name and its actions.
    static QMap<QString, QList<QAction *>> menusOf(AllMenus &p);
};

QMap<QString, QList<QAction *>> MenuControlsTest::menusOf(AllMenus &p)
{
    QMap<QString, QList<QAction *>> menus;
    for (const QMenu *menu : p.mainWindow.menuBar()->findChildren<QMenu *>()) {
        if (!menu->isEmpty()) // the toolkit has one for a bar that is too narrow
            menus[menu->objectName()] = menu->actions();
    }
    menus[u"trayMenu"_s] = p.menu(u"trayMenu"_s)->actions();
    for (const QString &view : {u"rssListView"_s, u"timerView"_s, u"scrollView"_s})
        menus[view] = p.find(view)->actions();
    return menus;
}

void MenuControlsTest::everyItemIsInTheTable()
{
    AllMenus p;
    p.launchOnTab(tab::list);
    QSet<QString> listed = {u"windowMenu/"_s + restingItem};
    for (const MenuItem &row : barItems() + trayItems() + rowItems())
        listed.insert(row.menu + u'/' + row.name);
    QSet<QString> present;
    const auto menus = menusOf(p);
    for (auto menu = menus.cbegin(); menu != menus.cend(); ++menu) {
        for (const QAction *item : itemsOf(menu.value()))
            present.insert(menu.key() + u'/' + item->objectName());
    }
    QCOMPARE(present - listed, QSet<QString>());
    QCOMPARE(listed - present, QSet<QString>());
}

void MenuControlsTest::everyItemSaysWhatItIs()
{
    const QSet<QString> literalTexts = {u"詳細記事画面を開く"_s, u"詳細記事画面を閉じる"_s};
    AllMenus p;
    p.launchOnTab(tab::list);
    const auto menus = menusOf(p);
    for (auto menu = menus.cbegin(); menu != menus.cend(); ++menu) {
        if (menu.key() == u"fontMenu"_s || menu.key() == u"boarderMenu"_s)
            continue; // names of fonts, and numbers
        for (const QAction *item : itemsOf(menu.value())) {
            QVERIFY2(!item->objectName().isEmpty(), qPrintable(item->text()));
            QVERIFY2(isLocalized(item->text()) || literalTexts.contains(item->text()),
                     qPrintable(item->text()));
            const bool hasKey = !mnemonicOf(item->text()).isEmpty() || !item->shortcut().isEmpty();
            QVERIFY2(hasKey, qPrintable(item->text()));
        }
    }
    for (const QAction *top : p.mainWindow.menuBar()->actions())
        QVERIFY2(isLocalized(top->text()) && !mnemonicOf(top->text()).isEmpty(),
                 qPrintable(top->text()));
}

void MenuControlsTest::lettersAreUnique()
{
    AllMenus p;
    p.launchOnTab(tab::list);
    const auto menus = menusOf(p);
    for (const QList<QAction *> &actions : menus) {
        QMap<QString, QString> users;
        for (const QAction *item : actions) {
            const QString letter = mnemonicOf(item->text());
            QVERIFY2(letter.isEmpty() || !users.contains(letter),
                     qPrintable(item->text() + u" and "_s + users.value(letter)));
            users[letter] = item->text();
        }
    }
}

void MenuControlsTest::shortcutsAreUnique()
{
    AllMenus p;
    p.launchOnTab(tab::list);
    QMap<QString, QString> users;
    for (const QAction *item : p.mainWindow.findChildren<QAction *>()) {
        if (item->shortcutContext() == Qt::WidgetShortcut)
            continue; // of a table, while it has the keys
        for (const QKeySequence &keys : item->shortcuts()) {
            QVERIFY2(!users.contains(keys.toString()), qPrintable(keys.toString()));
            users[keys.toString()] = item->objectName();
        }
    }
    QVERIFY(users.size() >= 15);
}

void MenuControlsTest::eachItem(const std::vector<MenuItem> &items)
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("byShortcut");
    for (int row = 0; row < int(items.size()); ++row) {
        const MenuItem &item = items[size_t(row)];
        QTest::addRow("%s/%s, menu", qPrintable(item.menu), qPrintable(item.name)) << row << false;
        if (!item.keys.isEmpty())
            QTest::addRow("%s/%s, %s", qPrintable(item.menu), qPrintable(item.name),
                          qPrintable(item.keys.toString()))
                << row << true;
    }
}

void MenuControlsTest::expectEffect(AllMenus &p, const MenuItem &row, QAction &item,
                                    const Way &choose)
{
    QFETCH(bool, byShortcut);
    p.settle();
    QVERIFY(item.shortcuts().contains(row.keys) || row.keys.isEmpty());
    const QString before = row.effect.state(p);
    if (!row.effect.wanted.isNull())
        QVERIFY2(before != row.effect.wanted, qPrintable(before));
    if (byShortcut) {
        const QKeyCombination keys = row.keys[0];
        QWidget *target = QApplication::focusWidget();
        QVERIFY(target);
        QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
    } else {
        choose(p, item);
    }
    const auto now = [&] {
        p.settle();
        return row.effect.state(p);
    };
    if (row.effect.wanted.isNull())
        QTRY_VERIFY(now() != before);
    else
        QTRY_COMPARE(now(), row.effect.wanted);
}

void MenuControlsTest::barItemsDoWhatTheTableSays()
{
    QFETCH(int, row);
    const MenuItem item = barItems()[size_t(row)];
    AllMenus p(item.withBoard);
    p.launchOnTab(tab::list);
    p.mainWindow.createMenus();
    if (item.before)
        item.before(p);
    QAction *action = itemOf(p.menu(item.menu)->actions(), item);
    QVERIFY(action);
    expectEffect(p, item, *action, [&item](AllMenus &menus, const QAction &chosen) {
        chooseInBar(menus, item.menu, chosen);
    });
}

void MenuControlsTest::trayItemsDoWhatTheTableSays()
{
    QFETCH(int, row);
    const MenuItem item = trayItems()[size_t(row)];
    AllMenus p;
    p.launchOnTab(tab::list);
    if (item.before)
        item.before(p);
    QMenu *menu = p.menu(u"trayMenu"_s);
    QAction *action = itemOf(menu->actions(), item);
    QVERIFY(action);
    expectEffect(p, item, *action, [menu](AllMenus &, const QAction &chosen) {
        menu->popup(QPoint(10, 10));
        choose(chosen);
    });
}

void MenuControlsTest::rowItemsDoWhatTheTableSays()
{
    QFETCH(int, row);
    const MenuItem item = rowItems()[size_t(row)];
    AllMenus p;
    p.launchOnTab(tab::list);
    if (item.before)
        item.before(p);
    auto *view = p.find(item.menu);
    view->window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(view->window()));
    view->setFocus();
    QAction *action = itemOf(view->actions(), item);
    QVERIFY(action);
    expectEffect(p, item, *action, [view](AllMenus &, const QAction &chosen) {
        // The menu of a view runs in a loop of its own: the letter has to come from within.
        QTimer::singleShot(0, view, [&chosen] { choose(chosen); });
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(5, 5),
                                  view->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(view, &menuKey);
    });
}

QTEST_MAIN(MenuControlsTest)
#include "menucontrols_test.moc"
