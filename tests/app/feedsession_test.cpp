// SPDX-License-Identifier: MIT
#include "OwnHome.h"
#include "app/CommandLine.h"
#include "app/Program.h"
#include "feeds/AddressFile.h"
#include "platform/Localization.h"
#include "platform/PropertyListFile.h"
#include "platform/UserDefaults.h"
#include "tests/support/Drops.h"
#include "tests/support/HttpServer.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <semaphore>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto seenLimit = 10s; // shorter than what the program waits for a server
} // namespace

/// The whole program in its windows, with a server that answers only when the windows have said
/// what they wait for: what a person does with the feed list from the start to the end of a
/// session, and what is there at the next start.
class FeedSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void session();

private:
    void serve(const char *path, const char *title, std::counting_semaphore<> &seen);
    void look();
    void work();
    void quit() { named<QAction>("actQuit")->trigger(); }
    QString storedAddresses() const;

    /// In the window of the start, else in the main window: other windows have the same names.
    template <typename Object>
    static Object *named(const char *name)
    {
        for (const char *holder : {"startupWindow", "mainWindow"}) {
            const QWidget *place = window(holder);
            auto *object = place ? place->findChild<Object *>(QLatin1String(name)) : nullptr;
            if (object)
                return object;
        }
        qFatal("there is no %s", name);
    }
    static QWidget *window(const char *name)
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QLatin1String(name) && window->isVisible())
                return window;
        }
        return nullptr;
    }
    /// Keys go to the window in front; the board's own window has keys too.
    static void bringToFront(QWidget *window)
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }
    static QString status() { return named<QLabel>("statusText")->text(); }

    OwnHome home_;
    HttpServer server_;
    QStringList waits_; ///< what the windows said they waited for
    std::counting_semaphore<> firstIsSeen_{0};
    std::counting_semaphore<> secondIsSeen_{0};
};

void FeedSessionTest::initTestCase()
{
    serve("/first", "はじめ", firstIsSeen_);
    serve("/second", "つぎ", secondIsSeen_);
}

void FeedSessionTest::serve(const char *path, const char *title, std::counting_semaphore<> &seen)
{
    const QByteArray document = "<rss version='2.0'><channel><title>"_ba + title +
                                "</title><item><title>x</title></item></channel></rss>";
    server_.route(path, [document, &seen](const HttpServer::Request &) {
        [[maybe_unused]] const bool isSeen = seen.try_acquire_for(seenLimit);
        return HttpServer::document(document);
    });
}

void FeedSessionTest::look()
{
    if (window("startupWindow")) {
        waits_ << u"start: "_s + named<QLabel>("accessField")->text();
        if (waits_.last().endsWith(u"/first"_s))
            firstIsSeen_.release();
    }
    if (window("addressPanel")) {
        waits_ << u"dialog: "_s + named<QLabel>("addressWaitText")->text()
               << u"line: "_s + status();
        if (waits_.last().contains(u"/second"_s))
            secondIsSeen_.release();
    }
}

QString FeedSessionTest::storedAddresses() const
{
    const UserDefaults store(UserDefaults::defaultPath());
    QStringList names;
    for (const PropertyValue &entry :
         store.arrayForKey(u"RSSSiteAddresses"_s).value_or(PropertyArray())) {
        const auto *feed = entry.get<PropertyDictionary>();
        names << feed->string(u"RSSAddressString"_s)->section(u'/', -1) + u'=' +
                     feed->string(u"RSSNameString"_s).value_or(u"?"_s);
    }
    return names.join(u' ');
}

void FeedSessionTest::session()
{
    const PropertyDictionary first{{u"RSSAddressString"_s, server_.address("/first")}};
    QVERIFY(home_.writeProfile({{u"RSSSiteAddresses"_s, PropertyArray{first}}}));
    Program program(CommandLine{});
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, &FeedSessionTest::look);
    watch.start(20);
    QTimer begin;
    connect(&begin, &QTimer::timeout, this, [&] {
        if (!window("mainWindow"))
            return;
        begin.stop();
        QTimer::singleShot(0, this, [this] {
            work();
            quit();
        });
    });
    begin.start(20);
    QCOMPARE(program.run(), 0);
    QCOMPARE(storedAddresses(), u"second=つぎ first=はじめ nothing="_s);
}

void FeedSessionTest::work()
{
    QCOMPARE(storedAddresses(), u"first=はじめ"_s); // fetched at the start, and kept
    QVERIFY(waits_.contains(u"start: "_s + server_.address("/first")));

    auto *table = named<QTableView>("rssListView");
    const auto add = [&](const QString &address) {
        QTest::mouseClick(named<QPushButton>("createButton"), Qt::LeftButton);
        bringToFront(window("addressPanel"));
        QTest::keyClicks(named<QLineEdit>("addressText"), address);
        QTest::keyClick(named<QLineEdit>("addressText"), Qt::Key_Return);
    };
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualRect(table->model()->index(0, 3)).center());
    waits_.clear();
    add(server_.address("/second"));
    const QString second = localized(u"FetchingAddress"_s).arg(server_.address("/second"));
    QVERIFY(waits_.contains(u"dialog: "_s + second));
    QVERIFY(waits_.contains(u"line: "_s + second));
    QTRY_COMPARE(table->model()->rowCount(), 2);
    QVERIFY(!window("addressPanel"));
    QCOMPARE(status(), QString());

    bringToFront(window("mainWindow"));
    QTest::keyClick(table, Qt::Key_Escape); // no row is selected: at the end
    add(server_.address("/nothing"));
    QTRY_COMPARE(table->model()->rowCount(), 3);
    QVERIFY2(status().contains(server_.address("/nothing")), qPrintable(status()));
    QVERIFY2(status().contains(u"404"), qPrintable(status()));
    QCOMPARE(table->model()->index(2, 3).data().toString(), u"-"_s);

    QMimeData link;
    link.setText(u"https://example.jp/"_s);
    QVERIFY(!dropOn(*table->viewport(), link, {50, 5}).isTaken);
    QCOMPARE(status(), localized(u"FeedDropTypeInstead"_s));

    named<QAction>("actSaveURL")->trigger();
    auto *name = named<QFileDialog>("saveURLPanel")->findChild<QLineEdit *>(u"fileNameEdit"_s);
    bringToFront(name->window());
    name->setText(home_.filePath(u"mine.rssurl"_s));
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_COMPARE(readAddressFile(home_.filePath(u"mine.rssurl"_s)),
                 (QStringList{server_.address("/second"), server_.address("/first"),
                              server_.address("/nothing")}));
}

QTEST_MAIN(FeedSessionTest)
#include "feedsession_test.moc"
