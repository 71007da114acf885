// SPDX-License-Identifier: MIT
#include "platform/SimulatedClock.h"
#include "render/ProgressBoard.h"
#include "render/VelmorFontx.h"
#include "render/VelmorProgress.h"
#include "tests/support/bitmapastext.h"

#include <QTest>

#include <cmath>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

/// A board that writes down what it is asked, with the milliseconds since the start.
class RecordingBoard final : public ProgressBoard
{
public:
    RecordingBoard(const Clock &clock, int modules)
        : modules_(modules), clock_(clock), start_(clock.steadyNow())
    {}

    std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text) override
    {
        return fonts_.bitmapWithString(text);
    }
    int cmodule() override { return modules_; }
    void cmodule(int modules) override
    {
        modules_ = modules;
        note(u"cmodule %1"_s.arg(modules));
    }
    void sendBufferBitmap(const VelmorBitmap &bitmap) override
    {
        image_ = asText(bitmap);
        note(u"send"_s);
    }
    void sc_show() override { note(u"show"_s); }
    void sc_clear() override { note(u"clear"_s); }

    QStringList takeCalls() { return std::exchange(calls_, {}); }
    const QStringList &image() const { return image_; }

private:
    void note(const QString &call)
    {
        const auto since =
            std::chrono::duration_cast<std::chrono::milliseconds>(clock_.steadyNow() - start_);
        calls_ << u"%1 %2"_s.arg(since.count()).arg(call);
    }

    int modules_;
    const Clock &clock_;
    Clock::SteadyTime start_;
    VelmorFontx fonts_;
    QStringList calls_;
    QStringList image_;
};

/// A row in the middle of the picture: sides of frames show as single dots.
QString middleRow(const RecordingBoard &board, int firstColumn)
{
    return board.image()[8].mid(firstColumn);
}

QString dots(int count, QChar dot)
{
    return QString(count, dot);
}

} // namespace

class VelmorProgressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void newProgress_countsTo100();
    void animation_clearsWaitsAndShows();
    void stopAnimation_clears();
    void bar_data();
    void bar();
    void oneStepHoldsTheCallerBack();
    void completion_waitsLonger();
    void unknownModuleCount_becomes4();
    void titleAsWideAsTheBoard_leavesNoBar();
    void titleWiderThanTheBoard_showsWhatFits();
    void hugeModuleCount_isHarmless();
    void withoutABoardNothingHappens();
    void quitEndsTheWaits();

private:
    std::unique_ptr<SimulatedClock> clock_;
};

void VelmorProgressTest::init()
{
    clock_ = std::make_unique<SimulatedClock>(Clock::CalendarTime{});
}

void VelmorProgressTest::newProgress_countsTo100()
{
    const VelmorProgress progress(*clock_);
    QCOMPARE(progress.maxValue(), 100.0);
    QVERIFY(progress.title().isNull());
}

void VelmorProgressTest::animation_clearsWaitsAndShows()
{
    RecordingBoard board(*clock_, 4);
    VelmorProgress progress(*clock_);
    progress.setSystem(&board);
    progress.setTitle(u"読込中"_s);
    progress.startAnimation();
    QCOMPARE(board.takeCalls(), QStringList({u"0 clear"_s, u"100 send"_s, u"100 show"_s}));
    // The title, then an empty frame to the board's end.
    QCOMPARE(board.image().size(), 16);
    QCOMPARE(board.image()[0].size(), 128);
    QCOMPARE(board.image()[0].mid(48), dots(80, u'#'));
    QCOMPARE(middleRow(board, 48), u'#' + dots(78, u'.') + u'#');
}

void VelmorProgressTest::stopAnimation_clears()
{
    RecordingBoard board(*clock_, 4);
    VelmorProgress(*clock_, &board).stopAnimation();
    QCOMPARE(board.takeCalls(), QStringList(u"0 clear"_s));
}

void VelmorProgressTest::bar_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("maxValue");
    QTest::addColumn<int>("filled");
    QTest::newRow("nothing yet") << 0.0 << 100.0 << 0;
    QTest::newRow("half") << 50.0 << 100.0 << 44;
    QTest::newRow("cut to whole columns") << 1.99 << 100.0 << 1;
    QTest::newRow("all but one column") << 99.0 << 100.0 << 87;
    QTest::newRow("complete") << 100.0 << 100.0 << 88;
    QTest::newRow("beyond the end") << 250.0 << 100.0 << 88;
    QTest::newRow("before the start") << -5.0 << 100.0 << 0;
    QTest::newRow("three sites of seven") << 3.0 << 7.0 << 37;
    QTest::newRow("nothing to do") << 0.0 << 0.0 << 0;
    QTest::newRow("no number") << std::nan("") << 100.0 << 0;
}

void VelmorProgressTest::bar()
{
    QFETCH(double, value);
    QFETCH(double, maxValue);
    QFETCH(int, filled);
    RecordingBoard board(*clock_, 4);
    VelmorProgress progress(*clock_, &board);
    progress.setTitle(u"12345"_s); // 40 columns, 88 are left
    progress.setMaxValue(maxValue);
    progress.setDoubleValue(value);

    const int empty = 88 - filled;
    QString expected = dots(filled, u'#');
    if (empty == 1)
        expected += u'#';
    else if (empty > 1)
        expected += u'#' + dots(empty - 2, u'.') + u'#';
    QCOMPARE(middleRow(board, 40), expected);
    QCOMPARE(board.image()[0].mid(40), dots(88, u'#'));
    QCOMPARE(board.image()[15].mid(40), dots(88, u'#'));
}

void VelmorProgressTest::oneStepHoldsTheCallerBack()
{
    RecordingBoard board(*clock_, 4);
    VelmorProgress progress(*clock_, &board);
    const auto start = clock_->steadyNow();
    progress.setDoubleValue(99.0);
    QVERIFY(clock_->steadyNow() - start == 500ms);
}

void VelmorProgressTest::completion_waitsLonger()
{
    RecordingBoard board(*clock_, 4);
    VelmorProgress progress(*clock_, &board);
    const auto start = clock_->steadyNow();
    progress.setDoubleValue(100.0);
    QVERIFY(clock_->steadyNow() - start == 600ms);
}

void VelmorProgressTest::unknownModuleCount_becomes4()
{
    for (const int modules : {0, -1}) {
        RecordingBoard board(*clock_, modules);
        VelmorProgress(*clock_, &board).setDoubleValue(0.0);
        const QStringList calls = board.takeCalls();
        QVERIFY(calls.first().endsWith(u"cmodule 4"_s));
        QCOMPARE(board.cmodule(), 4);
        QCOMPARE(board.image()[0].size(), 128);
    }
}

void VelmorProgressTest::titleAsWideAsTheBoard_leavesNoBar()
{
    RecordingBoard board(*clock_, 1);
    VelmorProgress progress(*clock_, &board);
    progress.setTitle(u"漢字"_s);
    progress.setDoubleValue(50.0);
    QCOMPARE(board.image(), asText(*VelmorFontx().bitmapWithString(u"漢字"_s)));
}

void VelmorProgressTest::titleWiderThanTheBoard_showsWhatFits()
{
    RecordingBoard board(*clock_, 1);
    VelmorProgress progress(*clock_, &board);
    progress.setTitle(u"漢字読込中"_s);
    progress.setDoubleValue(50.0);
    QCOMPARE(board.image(), asText(*VelmorFontx().bitmapWithString(u"漢字"_s)));
    QCOMPARE(board.takeCalls().size(), 2);
}

void VelmorProgressTest::hugeModuleCount_isHarmless()
{
    RecordingBoard board(*clock_, std::numeric_limits<int>::max());
    VelmorProgress(*clock_, &board).setDoubleValue(50.0);
    QCOMPARE(board.image()[0].size(), 10000);
}

void VelmorProgressTest::withoutABoardNothingHappens()
{
    VelmorProgress progress(*clock_);
    const auto start = clock_->steadyNow();
    progress.startAnimation();
    progress.setDoubleValue(100.0);
    progress.stopAnimation();
    QVERIFY(clock_->steadyNow() == start);
}

void VelmorProgressTest::quitEndsTheWaits()
{
    RecordingBoard board(*clock_, 4);
    clock_->endSleeps();
    const auto start = clock_->steadyNow();
    VelmorProgress(*clock_, &board).startAnimation();
    QVERIFY(clock_->steadyNow() == start);
}

QTEST_APPLESS_MAIN(VelmorProgressTest)
#include "velmorprogress_test.moc"
