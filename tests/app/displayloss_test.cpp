// SPDX-License-Identifier: MIT
// The X server ends while the real program stands in any of its windows: the program ends with it,
// says so in one line, and leaves whole lists and no process behind.
#include "OwnDisplay.h"
#include "RunningProgram.h"
#include "tests/support/HttpServer.h"

#include <QDir>
#include <QPoint>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsSoon = 30s;      // on a busy machine
constexpr int happensSoon = 30'000; // ms

const auto mainWindow = u"QoVelmorRSS"_s;
constexpr QPoint inFirstRow(400, 125); // of the feeds

enum class Scene { Display, FeedPanel, NameIsFetched, DeletionAlert, TimerPanel, FilePanel };

/// How many processes live in this home, whoever started them.
int processesOf(const QString &home)
{
    int count = 0;
    const QStringList processes = QDir(u"/proc"_s).entryList({u"[1-9]*"_s}, QDir::Dirs);
    for (const QString &process : processes) {
        QFile environment(u"/proc/%1/environ"_s.arg(process));
        if (environment.open(QIODevice::ReadOnly) &&
            environment.readAll().split('\0').contains("HOME=" + home.toLocal8Bit()))
            ++count;
    }
    return count;
}

} // namespace

class DisplayLossTest : public QObject
{
    Q_OBJECT

private:
    HttpServer server_;

    void bringAbout(Scene scene, const OwnDisplay &display);

private Q_SLOTS:
    void initTestCase();
    void serverThatEnds_endsTheProgram_data();
    void serverThatEnds_endsTheProgram();
};

void DisplayLossTest::initTestCase()
{
    server_.route("/feed", HttpServer::document("<rss version='2.0'><channel><title>t</title>"
                                                "<item><title>a</title></item></channel></rss>"));
    HttpServer::Reply silence;
    silence.holdsOpen = true;
    server_.route("/silent", silence);
}

void DisplayLossTest::bringAbout(Scene scene, const OwnDisplay &display)
{
    const auto opens = [&display](const QString &title) {
        return QTest::qWaitFor([&] { return display.focusWindow(title); }, happensSoon);
    };
    QVERIFY(opens(mainWindow));
    switch (scene) {
    case Scene::Display:
        return;
    case Scene::FeedPanel:
    case Scene::NameIsFetched: {
        QVERIFY(display.press(u"ctrl+1"_s) && display.press(u"alt+a"_s));
        QVERIFY(opens(u"RSS の追加"_s));
        if (scene == Scene::FeedPanel)
            return;
        const int hits = server_.hits("/silent");
        QVERIFY(display.type(server_.address("/silent")) && display.press(u"Return"_s));
        QTRY_COMPARE_WITH_TIMEOUT(server_.hits("/silent"), hits + 1, happensSoon);
        return;
    }
    case Scene::DeletionAlert:
        QVERIFY(display.press(u"ctrl+1"_s));
        QVERIFY(QTest::qWaitFor(
            [&] {
                return display.click(mainWindow, inFirstRow) && display.press(u"Delete"_s) &&
                       display.focusWindow(u"RSS の削除"_s);
            },
            happensSoon));
        return;
    case Scene::TimerPanel:
        QVERIFY(display.press(u"ctrl+t"_s) && opens(u"タイマー"_s));
        QVERIFY(display.press(u"alt+a"_s) && opens(u"新規タイマー"_s));
        return;
    case Scene::FilePanel:
        QVERIFY(display.press(u"alt+f"_s) && display.press(u"i"_s));
        QVERIFY(opens(u"RSS リストの読み込み"_s));
        return;
    }
}

void DisplayLossTest::serverThatEnds_endsTheProgram_data()
{
    QTest::addColumn<Scene>("scene");
    QTest::addColumn<bool>("takesLeave");
    QTest::newRow("killed while a line is shown") << Scene::Display << false;
    QTest::newRow("closed while a line is shown") << Scene::Display << true;
    QTest::newRow("killed beside the panel for a feed") << Scene::FeedPanel << false;
    QTest::newRow("killed while the panel waits for a server") << Scene::NameIsFetched << false;
    QTest::newRow("closed while the panel waits for a server") << Scene::NameIsFetched << true;
    QTest::newRow("killed beside the alert before a deletion") << Scene::DeletionAlert << false;
    QTest::newRow("killed beside the panel for a timer") << Scene::TimerPanel << false;
    QTest::newRow("killed beside the panel for a file") << Scene::FilePanel << false;
}
void DisplayLossTest::serverThatEnds_endsTheProgram()
{
    QFETCH(Scene, scene);
    QFETCH(bool, takesLeave);
    OwnDisplay display;
    QVERIFY2(display.start(), "Xvfb is needed");
    RunningProgram program;
    program.addFeed(server_.address("/feed"), u"駅"_s, 2);
    program.set(u"DisplayAuto"_s, true);
    program.setVariable(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    program.setVariable(u"DISPLAY"_s, display.name());
    QVERIFY(program.start());
    QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS表示:"_s), happensSoon);
    bringAbout(scene, display);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(program.isRunning());
    QVERIFY(processesOf(program.home()) > 0);
    const qsizetype saidBefore = program.errors().size();

    if (takesLeave)
        display.close();
    else
        display.kill();
    QCOMPARE(program.waitForEnd(endsSoon), 1); // a core dump has no status
    QCOMPARE(program.errors().sliced(saidBefore),
             QByteArray("qovelmorrss: the display has gone away; the program ends.\n"));
    QVERIFY(program.isStoreWhole());
    QCOMPARE(processesOf(program.home()), 0);
}

QTEST_GUILESS_MAIN(DisplayLossTest)
#include "displayloss_test.moc"
