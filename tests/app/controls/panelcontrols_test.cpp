// SPDX-License-Identifier: MIT
#include "ControlsWalk.h"
#include "WindowControls.h"
#include "app/ToolkitTexts.h"
#include "feeds/AddressFile.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto mainWindow = u"mainWindow"_s;

void showSettings(AllWindows &p)
{
    p.press(Qt::Key_Comma, Qt::ControlModifier);
}

Deed menuItem(const QString &name)
{
    return [name](AllWindows &p) { p.item(name)->trigger(); };
}

/// The name of a file in the folder of the test, entered and confirmed.
Deed enterFile(const QString &panel, const QString &name)
{
    return [panel, name](AllWindows &p) {
        // Typed letter by letter, the toolkit's list of completions would take the Return key.
        auto *field = qobject_cast<QLineEdit *>(AllWindows::controlIn(panel, u"fileNameEdit"_s));
        QVERIFY(field);
        field->setText(p.folder.filePath(name));
        QTest::keyClick(field, Qt::Key_Return);
        p.settle();
    };
}

/// A list of one feed.
Deed writeList(const QString &name)
{
    return [name](AllWindows &p) {
        QVERIFY(writeAddressFile(p.folder.filePath(name), {u"http://town/b"_s}));
    };
}

Deed writeFile(const QString &name)
{
    return [name](AllWindows &p) {
        QFile file(p.folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    };
}

const auto logPanel = inTurn({showSettings, clicked(mainWindow, u"actLogFilePath"_s)});
const auto browsers = inTurn({showSettings, clicked(mainWindow, u"actSelectBrowser"_s)});

/// A file whose name is in the way of what is written.
Stage replacing()
{
    const auto alert = u"replaceFileAlert"_s;
    const auto state = [alert](AllWindows &p) {
        const auto held = readAddressFile(p.folder.filePath(u"mine.rssurl"_s));
        return (AllWindows::shown(alert) ? u"asks, "_s : u"closed, "_s) +
               QString::number(held ? held->size() : 0) + u" feeds"_s;
    };
    return {
        alert,
        alert,
        inTurn({writeList(u"mine.rssurl"_s), menuItem(u"actSaveURL"_s),
                enterFile(u"saveURLPanel"_s, u"mine.txt"_s)}),
        {
            {alert + u"Accept"_s, press(), becomes(u"mine.rssurl"_s, u"closed, 2 feeds"_s, state)},
            {alert + u"Cancel"_s, press() + keys({Qt::Key_Escape}),
             becomes(u"mine.rssurl"_s, u"closed, 1 feeds"_s, state)},
        }};
}

/// The log would take the place of a file.
Stage replacingByLog()
{
    const auto alert = u"logFileExistsAlert"_s;
    const auto state = [alert](AllWindows &p) {
        const bool isTaken = p.setup.logFilePath().endsWith(u"other.txt"_s);
        return (AllWindows::shown(alert) ? u"asks"_s : u"closed"_s) +
               (isTaken ? u", other.txt"_s : u", as before"_s);
    };
    return {
        alert,
        alert,
        inTurn({writeFile(u"other.txt"_s), logPanel, enterFile(u"logFilePanel"_s, u"other.txt"_s)}),
        {
            {alert + u"Accept"_s, press(),
             becomes(u"the log file"_s, u"closed, other.txt"_s, state)},
            {alert + u"Cancel"_s, press() + keys({Qt::Key_Escape}),
             becomes(u"the log file"_s, u"closed, as before"_s, state)},
        }};
}

/// An import that takes long: its panel comes by itself.
Stage importing()
{
    const auto panel = u"importPanel"_s;
    const auto state = [](AllWindows &p) {
        return p.rssList.isImportCancelled() ? u"broken off"_s : u"goes on"_s;
    };
    return {panel,
            panel,
            [panel](AllWindows &p) {
                p.rssList.window().importStarts(2);
                QTRY_VERIFY(AllWindows::shown(panel));
            },
            {
                {u"actImportCancel"_s, press() + keys({Qt::Key_Escape}),
                 becomes(u"the import"_s, u"broken off"_s, state)},
            }};
}

Stage browserPanel()
{
    const auto panel = u"browserPanel"_s;
    const auto key = u"DesignateBrowser"_s;
    const std::vector<Gesture> second = {
        {u"Down, Return"_s,
         [](AllWindows &, QWidget &list) {
             QTest::keyClick(&list, Qt::Key_Down);
             QTest::keyClick(&list, Qt::Key_Return);
         }},
        {u"double click"_s, [](AllWindows &, QWidget &control) {
             auto *list = qobject_cast<QListWidget *>(&control);
             const QPoint place = list->visualItemRect(list->item(1)).center();
             QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
             QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
         }}};
    return {panel,
            panel,
            browsers,
            {
                {u"browserList"_s, second, closesAndStores(panel, key)},
                {u"browserFromFile"_s, press(), opens(u"browserFilePanel"_s)},
                {u"browserCancel"_s, press() + keys({Qt::Key_Escape}), closes(panel, key)},
                {u"browserSelect"_s, press(), closesAndStores(panel, key)},
            }};
}

/// The toolkit's own panels: what is entered, and on what it acts.
struct Panel
{
    QString name;
    Deed open;
    Deed enter;
    Effect effect;
    QString key; ///< stays as it is when the panel is cancelled
};

std::vector<Panel> panels()
{
    const auto feeds = u"RSSSiteAddresses"_s;
    const auto browser = u"DesignateBrowser"_s;
    const auto color = u"LightLEDColor"_s;
    const auto exported = changes(u"mine.rssurl"_s, [](AllWindows &p) {
        return QString::number(QFileInfo::exists(p.folder.filePath(u"mine.rssurl"_s)));
    });
    const auto logFile =
        changes(u"the log file"_s, [](AllWindows &p) { return p.setup.logFilePath(); });
    const Deed enterColor = [](AllWindows &) {
        QWidget *panel = AllWindows::shown(u"lightLEDColorPanel"_s);
        QLineEdit *number = nullptr;
        for (auto *field : panel->findChildren<QLineEdit *>()) {
            if (field->text().startsWith(u'#'))
                number = field;
        }
        QVERIFY(number);
        QTest::keyClick(number, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(number, u"#00ff00"_s);
        QTest::keyClick(number, Qt::Key_Return);
    };
    return {
        {u"loadURLPanel"_s, inTurn({writeList(u"more.rssurl"_s), menuItem(u"actLoadURL"_s)}),
         enterFile(u"loadURLPanel"_s, u"more.rssurl"_s), stores(feeds), feeds},
        {u"saveURLPanel"_s, menuItem(u"actSaveURL"_s),
         enterFile(u"saveURLPanel"_s, u"mine.rssurl"_s), exported, feeds},
        {u"logFilePanel"_s, logPanel, enterFile(u"logFilePanel"_s, u"new.txt"_s), logFile,
         u"LogFilePath"_s},
        {u"browserFilePanel"_s,
         inTurn({writeFile(u"reader.desktop"_s), browsers,
                 clicked(u"browserPanel"_s, u"browserFromFile"_s)}),
         enterFile(u"browserFilePanel"_s, u"reader.desktop"_s), stores(browser), browser},
        {u"lightLEDColorPanel"_s, inTurn({showSettings, clicked(mainWindow, u"lightLEDColor"_s)}),
         enterColor, stores(color), color},
    };
}

} // namespace

/// The panels for files, colours and browsers, and the questions that they ask.
class PanelControlsTest : public ControlsWalk
{
    Q_OBJECT

public:
    PanelControlsTest();

private Q_SLOTS:
    void panels_sayWhatTheyAre_data() { eachPanel(); }
    void panels_sayWhatTheyAre();
    void panels_doWhatTheTableSays_data() { eachPanel(); }
    void panels_doWhatTheTableSays();
    void panels_changeNothingWhenCancelled_data() { eachPanel(); }
    void panels_changeNothingWhenCancelled();

private:
    static void eachPanel();
    static const Panel &panel(const std::vector<Panel> &all);

    QTemporaryDir home_; // with two browsers
};

PanelControlsTest::PanelControlsTest()
    : ControlsWalk({browserPanel(), replacing(), replacingByLog(), importing()})
{
    const QString applications = home_.filePath(u"data/applications"_s);
    QDir().mkpath(applications);
    for (const char *name : {"alpha", "beta"}) {
        QFile entry(applications + u'/' + QString::fromLatin1(name) + u".desktop"_s);
        if (entry.open(QIODevice::WriteOnly))
            entry.write(QByteArray("[Desktop Entry]\nType=Application\nExec=true %u\n"
                                   "MimeType=x-scheme-handler/http;\nName=") +
                        name + "\n");
    }
    qputenv("XDG_DATA_HOME", home_.filePath(u"data"_s).toLocal8Bit());
    qputenv("XDG_DATA_DIRS", home_.path().toLocal8Bit());
    translateToolkitTexts(*QCoreApplication::instance());
}

void PanelControlsTest::eachPanel()
{
    QTest::addColumn<int>("row");
    int row = 0;
    for (const Panel &one : panels())
        QTest::newRow(qPrintable(one.name)) << row++;
}

const Panel &PanelControlsTest::panel(const std::vector<Panel> &all)
{
    QFETCH(int, row);
    return all[size_t(row)];
}

void PanelControlsTest::panels_sayWhatTheyAre()
{
    const auto all = panels();
    AllWindows p;
    p.launchOnTab(tab::list);
    panel(all).open(p);
    const QWidget *window = AllWindows::shown(panel(all).name);
    QVERIFY(window);
    QVERIFY2(isLocalized(window->windowTitle()) || window->windowTitle() == u"指定ブラウザの選択"_s,
             qPrintable(window->windowTitle()));
    const auto isJapanese = [](const QString &text) {
        return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x2e80; });
    };
    int buttons = 0;
    for (const auto *button : window->findChildren<QPushButton *>()) {
        if (!button->isVisible())
            continue;
        ++buttons;
        QVERIFY2(isJapanese(button->text()) || button->text() == u"OK"_s,
                 qPrintable(button->text()));
    }
    QVERIFY(buttons >= 2);
}

void PanelControlsTest::panels_doWhatTheTableSays()
{
    const auto all = panels();
    AllWindows p;
    p.launchOnTab(tab::list);
    panel(all).open(p);
    QVERIFY(AllWindows::shown(panel(all).name));
    const QString before = panel(all).effect.state(p);
    panel(all).enter(p);
    p.settle();
    QTRY_VERIFY(!AllWindows::shown(panel(all).name));
    QTRY_VERIFY(panel(all).effect.state(p) != before);
}

void PanelControlsTest::panels_changeNothingWhenCancelled()
{
    const auto all = panels();
    AllWindows p;
    p.launchOnTab(tab::list);
    panel(all).open(p);
    QWidget *window = AllWindows::shown(panel(all).name);
    QVERIFY(window);
    const QString effect = panel(all).effect.state(p);
    const QString stored = p.stored(panel(all).key);
    QTest::keyClick(window, Qt::Key_Escape);
    p.settle();
    QTRY_VERIFY(!AllWindows::shown(panel(all).name));
    QCOMPARE(panel(all).effect.state(p), effect);
    QCOMPARE(p.stored(panel(all).key), stored);
}

QTEST_MAIN(PanelControlsTest)
#include "panelcontrols_test.moc"
