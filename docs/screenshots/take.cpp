// SPDX-License-Identifier: MIT
//
// Takes the pictures of the user guide: runs the program in this process on the sample feeds, opens
// each window and dialog as a user does, and saves what it looks like.
//
//   take_screenshots FOLDER        (see take.sh, which makes the profile and serves the feeds)
#include "app/CommandLine.h"
#include "app/InterfaceFont.h"
#include "app/Program.h"
#include "app/ProgramIcon.h"
#include "app/ToolkitTexts.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QScrollArea>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <functional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int deadline = 30'000; // ms

/// Null when there is none yet.
template <typename T>
T *seek(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *itself = window->objectName() == name ? qobject_cast<T *>(window) : nullptr;
        if (T *found = itself ? itself : window->findChild<T *>(name))
            return found;
    }
    return nullptr;
}

template <typename T>
T *find(const QString &name)
{
    if (T *found = seek<T>(name))
        return found;
    std::fprintf(stderr, "there is no %s\n", qPrintable(name));
    std::exit(1);
}

void waitFor(const std::function<bool()> &condition, const char *what)
{
    if (QTest::qWaitFor(condition, deadline))
        return;
    std::fprintf(stderr, "waited in vain for %s\n", what);
    std::exit(1);
}

/// Both tables have buttons of the same names, so the window counts too.
void click(const QString &name, const QString &window = u"mainWindow"_s)
{
    find<QWidget>(window)->findChild<QAbstractButton *>(name)->click();
}

void trigger(const QString &name)
{
    find<QAction>(name)->trigger();
}

class Photographer
{
public:
    explicit Photographer(const QString &folder) : folder_(folder) {}

    void takeAll();

private:
    /// The window as it is, menus and dialogs beside it left out.
    void take(const QString &name, QWidget *window);
    /// A menu, opened and closed again.
    void takeMenu(const QString &file, const QString &name);
    /// A dialog that `open` opens, and that Escape closes.
    void takeDialog(const QString &file, const QString &name, const std::function<void()> &open);

    void takeLists();
    void takeSettings();
    void takeTimers();

    QDir folder_;
};

void Photographer::take(const QString &name, QWidget *window)
{
    QCoreApplication::processEvents();
    const QString path = folder_.filePath(name + u".png"_s);
    if (!window->grab().save(path)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(1);
    }
}

void Photographer::takeMenu(const QString &file, const QString &name)
{
    auto *menu = find<QMenu>(name);
    menu->popup(find<QWidget>(u"mainWindow"_s)->mapToGlobal(QPoint(20, 40)));
    take(file, menu);
    menu->close();
}

void Photographer::takeDialog(const QString &file, const QString &name,
                              const std::function<void()> &open)
{
    open();
    waitFor([&name] { return seek<QWidget>(name) && seek<QWidget>(name)->isVisible(); },
            qPrintable(name));
    auto *dialog = find<QWidget>(name);
    take(file, dialog);
    QTest::keyClick(dialog, Qt::Key_Escape);
    QCoreApplication::processEvents();
}

void Photographer::takeLists()
{
    auto *window = find<QWidget>(u"mainWindow"_s);
    find<QTableView>(u"rssListView"_s)->selectRow(1);
    take(u"feeds"_s, window);
    takeDialog(u"feed-dialog"_s, u"addressPanel"_s, [] { click(u"createButton"_s); });
    takeDialog(u"feed-delete"_s, u"deleteRSSURLAlert"_s, [] { click(u"deleteButton"_s); });

    auto *tabs = find<QTabWidget>(u"mainTab"_s);
    tabs->setCurrentIndex(1);
    find<QTableView>(u"msgListView"_s)->selectRow(2);
    click(u"descriptionButton"_s);
    click(u"startDispButton"_s);
    QTest::qWait(6000); // the first line is in the middle of the board then
    take(u"messages"_s, window);
    take(u"led-window"_s, find<QWidget>(u"ledWindow"_s));
    click(u"stopDispButton"_s);
    click(u"descriptionButton"_s);

    takeMenu(u"menu-view"_s, u"viewMenu"_s);
    takeMenu(u"menu-display"_s, u"displayMenu"_s);
    takeDialog(u"guide-window"_s, u"guideWindow"_s, [] { trigger(u"actGuide"_s); });
    takeDialog(u"about"_s, u"aboutDialog"_s, [] { trigger(u"actAbout"_s); });
}

void Photographer::takeSettings()
{
    trigger(u"actPreferences"_s);
    find<QWidget>(u"mainWindow"_s)->resize(1000, 700); // room for two columns
    take(u"settings"_s,
         find<QScrollArea>(u"settingsPage"_s)->widget()); // also what is scrolled away
}

void Photographer::takeTimers()
{
    trigger(u"actOpenTimerWindow"_s);
    auto *window = find<QWidget>(u"timerWindow"_s);
    take(u"timers"_s, window);
    takeDialog(u"timer-dialog"_s, u"timerPanel"_s,
               [] { click(u"createButton"_s, u"timerWindow"_s); });
}

void Photographer::takeAll()
{
    takeLists();
    takeSettings();
    takeTimers();
    trigger(u"actQuit"_s);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: take_screenshots FOLDER\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setWindowIcon(programIcon());
    chooseInterfaceFont();
    translateToolkitTexts(application);
    QApplication::setQuitOnLastWindowClosed(false);
    Photographer photographer(QString::fromLocal8Bit(argv[1]));
    Program program(CommandLine{});
    QTimer::singleShot(0, [&photographer] {
        waitFor([] { return find<QWidget>(u"mainWindow"_s)->isVisible(); }, "the main window");
        click(u"getRSSButton"_s);
        waitFor([] { return find<QAbstractButton>(u"startDispButton"_s)->isEnabled(); },
                "the headlines");
        find<QTabWidget>(u"mainTab"_s)->setCurrentIndex(0);
        photographer.takeAll();
    });
    return program.run();
}
