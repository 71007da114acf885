// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.h"
#include "platform/views/PlaceKeeper.h"

#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// A window comes back where it was and as large as it was.
class PlaceKeeperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void place_comesBack();
    void place_isStoredSoonAfterAMove();
    void windowNobodyHasSeen_storesNothing();
    void windowOfALargerScreen_isFittedIn();
    void windowWithoutAPlace_isNoLargerThanTheScreen();
};

namespace {

const auto key = u"TimerWindowGeometry"_s;
constexpr QRect place(40, 60, 500, 300);

struct Desk
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"store.plist"_s);
    UserDefaults defaults{path};
};

} // namespace

void PlaceKeeperTest::place_comesBack()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"store.plist"_s);
    {
        UserDefaults defaults(path);
        QWidget window;
        new PlaceKeeper(window, defaults, key);
        window.show();
        window.setGeometry(place);
        window.hide();
    }
    UserDefaults defaults(path); // what is on the disk
    QWidget window;
    new PlaceKeeper(window, defaults, key);
    window.show();
    QTRY_COMPARE(window.geometry(), place);
}

void PlaceKeeperTest::place_isStoredSoonAfterAMove()
{
    Desk desk;
    QWidget window;
    window.setGeometry(place);
    new PlaceKeeper(window, desk.defaults, key);
    window.show();
    window.resize(600, 400);
    const auto stored = [&desk] { return UserDefaults(desk.path).dataForKey(key); };
    QVERIFY(stored().isEmpty()); // a drag is stored once, when it is over
    QTRY_VERIFY(!stored().isEmpty());
    QWidget other;
    QVERIFY(other.restoreGeometry(stored()));
    QCOMPARE(other.size(), QSize(600, 400));
}

void PlaceKeeperTest::windowNobodyHasSeen_storesNothing()
{
    Desk desk;
    {
        QWidget window;
        new PlaceKeeper(window, desk.defaults, key);
        window.setGeometry(place);
        window.hide();
    }
    QVERIFY(!desk.defaults.hasKey(key));
}

void PlaceKeeperTest::windowOfALargerScreen_isFittedIn()
{
    Desk desk;
    QWidget wide;
    const QRect screen = wide.screen()->availableGeometry();
    wide.setGeometry(QRect(screen.bottomRight(), screen.size() + QSize(300, 200)));
    desk.defaults.setData(wide.saveGeometry(), key);
    QWidget window;
    new PlaceKeeper(window, desk.defaults, key);
    QVERIFY2(screen.contains(window.geometry()), qPrintable(QDebug::toString(window.geometry())));
}

void PlaceKeeperTest::windowWithoutAPlace_isNoLargerThanTheScreen()
{
    Desk desk;
    QWidget window;
    const QSize screen = window.screen()->availableSize();
    window.resize(screen.width() + 100, 200);
    new PlaceKeeper(window, desk.defaults, key);
    QVERIFY(window.width() < screen.width());
    QCOMPARE(window.height(), 200);
}

QTEST_MAIN(PlaceKeeperTest)
#include "placekeeper_test.moc"
