// SPDX-License-Identifier: MIT
#include "OwnHome.h"
#include "app/CommandLine.h"
#include "app/Program.h"
#include "platform/TextEncoding.h"
#include "platform/UserDefaults.h"
#include "tests/support/HttpServer.h"
#include "tests/support/StdoutCapture.h"
#include "tools/qovelmorboard/SimulatedBoard.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace qovelmor;
using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int step = 20;         // ms between two looks at the program
constexpr int deadline = 30'000; // ms

std::vector<QMessageBox *> alerts()
{
    std::vector<QMessageBox *> found;
    for (QWidget *widget : QApplication::allWidgets()) {
        auto *alert = qobject_cast<QMessageBox *>(widget);
        if (alert != nullptr && alert->isVisible())
            found.push_back(alert);
    }
    return found;
}

QAbstractButton *button(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *found = window->findChild<QAbstractButton *>(name))
            return found;
    }
    return nullptr;
}

std::unique_ptr<SimulatedBoard> makeBoard()
{
    SimulatedBoardOptions options;
    options.throttled = false;
    options.firmware.speedFactor = 20.0; // a line lasts for a while
    std::string error;
    auto board = SimulatedBoard::create(options, error);
    if (!board)
        qWarning("%s", error.c_str());
    return board;
}

PropertyDictionary profile(const QString &feed, bool displays)
{
    return {{u"LogRSSRead"_s, true},
            {u"LogRSSDisp"_s, true},
            {u"LogSystem"_s, true},
            {u"DisplayAuto"_s, displays},
            {u"DispProgress"_s, !displays},
            {u"ComPortNumber"_s, 0}, // the board that the test gives it
            {u"RSSSiteAddresses"_s, PropertyArray{PropertyDictionary{{u"RSSValidate"_s, true},
                                                                     {u"RSSAddressString"_s, feed},
                                                                     {u"RSSNameString"_s, u"町"_s},
                                                                     {u"RSSFormat"_s, 2}}}}};
}

bool isStoreWhole()
{
    const UserDefaults store(UserDefaults::defaultPath());
    const auto feeds = store.arrayForKey(u"RSSSiteAddresses"_s);
    return !store.openReport().wasBroken && feeds && feeds->size() == 1;
}

} // namespace

/// The whole program in this process, with its real windows, while its board goes away for good.
class PortLossTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void lostPort_raisesOneAlertWhoseButtonEndsTheProgram_data();
    void lostPort_raisesOneAlertWhoseButtonEndsTheProgram();

private:
    QString logBook() const;

    OwnHome home_;
    HttpServer server_;
};

void PortLossTest::initTestCase()
{
    server_.route("/town", HttpServer::document(
                               u"<?xml version='1.0' encoding='UTF-8'?><rss version='2.0'>"
                               "<channel><title>町</title><item><title>長い見出しが流れる</title>"
                               "<link>http://town/</link><description>町</description>"
                               "<pubDate>Sat, 21 Nov 2026 09:30:00 +0900</pubDate></item>"
                               "</channel></rss>"_s.toUtf8()));
}

QString PortLossTest::logBook() const
{
    QFile file(home_.logPath());
    return file.open(QIODevice::ReadOnly) ? decodeShiftJis(file.readAll()) : QString();
}

void PortLossTest::lostPort_raisesOneAlertWhoseButtonEndsTheProgram_data()
{
    QTest::addColumn<bool>("displays");
    QTest::newRow("the display thread finds it, in the middle of a line") << true;
    QTest::newRow("the main thread finds it, for the progress of a read") << false;
}

void PortLossTest::lostPort_raisesOneAlertWhoseButtonEndsTheProgram()
{
    QFETCH(bool, displays);
    const auto board = makeBoard();
    QVERIFY(board);
    QFile::remove(home_.logPath());
    QVERIFY(home_.writeProfile(profile(server_.address("/town"), displays)));
    qputenv("QOVELMORRSS_SERIAL_DEVICES", QByteArray::fromStdString(board->path()));

    StdoutCapture out;
    Program program(CommandLine{});
    QElapsedTimer sinceAlert;
    std::size_t mostAlerts = 0;
    QStringList said;
    bool hungUp = false;
    QTimer driver;
    connect(&driver, &QTimer::timeout, this, [&] {
        const BoardView view = board->view();
        const bool reached = displays ? view.mode == DisplayMode::Scrolling
                                      : logBook().contains(u"QoVelmarRSS開始"_s);
        if (!hungUp && reached) {
            hungUp = true;
            board->hangUp();
            QVERIFY(board->waitUntil([](const BoardView &now) { return now.path.empty(); },
                                     std::chrono::seconds(10)));
            if (!displays)
                QTest::mouseClick(button(u"getRSSButton"_s), Qt::LeftButton);
        }
        const auto shown = alerts();
        mostAlerts = std::max(mostAlerts, shown.size());
        if (shown.empty())
            return;
        if (!sinceAlert.isValid()) {
            sinceAlert.start();
            said = {shown[0]->windowTitle(), shown[0]->informativeText(),
                    shown[0]->buttons().value(0)->text()};
        } else if (sinceAlert.elapsed() > 500) {
            QTest::mouseClick(shown[0]->buttons().value(0), Qt::LeftButton);
        }
    });
    driver.start(step);
    bool isInTime = true;
    QTimer::singleShot(deadline, &driver, [&isInTime] {
        isInTime = false;
        QCoreApplication::quit();
    });

    const int status = program.run();
    const QByteArray output = out.text();
    QVERIFY2(isInTime, "the alert's button did not end the program");
    QVERIFY2(status == 0, qPrintable(logBook()));
    QCOMPARE(mostAlerts, std::size_t{1});
    QCOMPARE(said, (QStringList{u"通信ポート再開エラー"_s,
                                u"通信ポートの再開に失敗しました。QoVelmorRSSを終了します。"_s,
                                u"了解"_s}));
    QVERIFY2(logBook().endsWith(u" システム:QoVelmarRSS終了\n"_s), qPrintable(logBook()));
    QVERIFY(isStoreWhole());
    QCOMPARE(output.count("Error opening serial port"), 1);
}

QTEST_MAIN(PortLossTest)
#include "portloss_test.moc"
