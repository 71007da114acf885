// SPDX-License-Identifier: MIT
#include "ScheduleParts.h"
#include "platform/Localization.h"
#include "schedule/TimerTableModel.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class TimerTableModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columns();
    void cells_data();
    void cells();
    void checkBox_invertsTheTimer();
    void checkBox_onlyByAState();
    void changes_comeAsSmallSteps();
    void drag_withinTheTable();
    void drag_fromElsewhere_isRefused();
};

namespace {

/// A table over three timers, watched by the model tester.
class Table : public ScheduleParts
{
public:
    Table()
    {
        start({dailyTimer(0, TimerOperation::StartDisplay, u"a"_s),
               dailyTimer(1, TimerOperation::StopDisplay, u"b"_s),
               dailyTimer(2, TimerOperation::StartDisplay)});
        model = std::make_unique<TimerTableModel>(schedule);
        tester = std::make_unique<QAbstractItemModelTester>(
            model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    QString text(int row, int column) const { return model->index(row, column).data().toString(); }

    std::unique_ptr<TimerTableModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

} // namespace

void TimerTableModelTest::columns()
{
    Table table;
    const QStringList identifiers{u"TMRValidate"_s, u"TMRFireDay"_s, u"TMRFireTime"_s,
                                  u"TMROperation"_s, u"TMRAddress"_s};
    QCOMPARE(table.model->columnCount(), identifiers.size());
    for (int column = 0; column < identifiers.size(); ++column) {
        QCOMPARE(table.model->headerData(column, Qt::Horizontal, Qt::UserRole).toString(),
                 identifiers[column]);
        QCOMPARE(table.model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                 localized(identifiers[column]));
    }
    QVERIFY(!table.model->headerData(5, Qt::Horizontal, Qt::UserRole).isValid());
}

void TimerTableModelTest::cells_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::newRow("days") << 0 << 1 << u"日月火水木金土"_s;
    QTest::newRow("time") << 1 << 2 << u"00:01"_s;
    QTest::newRow("operation") << 1 << 3 << u"表示停止"_s;
    QTest::newRow("the address of a start") << 0 << 4 << u"a"_s;
    QTest::newRow("no address of a stop") << 1 << 4 << u""_s;
    QTest::newRow("a start of the feed list") << 2 << 4 << u"RSSリストのURL"_s;
}

void TimerTableModelTest::cells()
{
    QFETCH(int, row);
    QFETCH(int, column);
    const Table table;
    QTEST(table.text(row, column), "text");
}

void TimerTableModelTest::checkBox_invertsTheTimer()
{
    Table table;
    const QModelIndex box = table.model->index(1, 0);
    QCOMPARE(box.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QSignalSpy changed(table.model.get(), &QAbstractItemModel::dataChanged);
    QVERIFY(table.model->setData(box, Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(box.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(table.storedTimers()[1].validate(), false);
}

void TimerTableModelTest::checkBox_onlyByAState()
{
    Table table;
    // A view that moves rows may try to blank the old place.
    QVERIFY(!table.model->setData(table.model->index(1, 0), QVariant(), Qt::CheckStateRole));
    QVERIFY(!table.model->setData(table.model->index(1, 1), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(!table.model->setData(table.model->index(1, 0), u"x"_s, Qt::EditRole));
    QCOMPARE(table.timers()[1].validate(), true);
}

void TimerTableModelTest::changes_comeAsSmallSteps()
{
    Table table;
    QSignalSpy inserted(table.model.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(table.model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(table.model.get(), &QAbstractItemModel::dataChanged);

    table.window.selected = 1;
    table.schedule.actCreateTimer();
    table.schedule.actEditExecute(TimerDraft());
    table.mainThread.drain();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted[0][1].toInt(), 1);
    QCOMPARE(table.model->rowCount(), 4);

    table.schedule.actDeleteTimer();
    table.schedule.deleteTimerAnswered(true);
    table.mainThread.drain();
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed[0][1].toInt(), 1);

    table.schedule.acceptRowDrop(0, 2);
    table.mainThread.drain();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(table.text(0, 2), u"00:01"_s);
    QCOMPARE(inserted.size() + removed.size(), 2);
}

void TimerTableModelTest::drag_withinTheTable()
{
    Table table;
    const std::unique_ptr<QMimeData> drag(
        table.model->mimeData({table.model->index(2, 1), table.model->index(2, 2)}));
    const auto canDrop = [&](int row, const QModelIndex &parent = {}) {
        return table.model->canDropMimeData(drag.get(), Qt::MoveAction, row, 0, parent);
    };
    QVERIFY(canDrop(0));
    QVERIFY(canDrop(1));
    QVERIFY(!canDrop(2));
    QVERIFY(!canDrop(3));
    QVERIFY(!canDrop(-1)); // below the last row, where it stands
    QVERIFY(canDrop(-1, table.model->index(0, 0)));

    QVERIFY(!table.model->dropMimeData(drag.get(), Qt::MoveAction, 2, 0, {}));
    QVERIFY(table.model->dropMimeData(drag.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(table.text(0, 2), u"00:02"_s);
    QCOMPARE(table.text(2, 2), u"00:01"_s);
    QVERIFY(table.storedTimers() == table.timers());
}

void TimerTableModelTest::drag_fromElsewhere_isRefused()
{
    Table table;
    QMimeData text;
    text.setText(u"1"_s);
    QVERIFY(!table.model->canDropMimeData(&text, Qt::CopyAction, 0, 0, {}));
    QMimeData damaged;
    damaged.setData(table.model->mimeTypes().first(), "one");
    QVERIFY(!table.model->canDropMimeData(&damaged, Qt::MoveAction, 0, 0, {}));
    QVERIFY(!table.model->dropMimeData(&damaged, Qt::MoveAction, 0, 0, {}));
    QVERIFY(table.model->mimeData({}) == nullptr);
}

QTEST_GUILESS_MAIN(TimerTableModelTest)
#include "timertablemodel_test.moc"
