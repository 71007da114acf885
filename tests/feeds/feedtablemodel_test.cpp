// SPDX-License-Identifier: MIT
#include "FeedListParts.h"
#include "feeds/FeedTableModel.h"
#include "platform/Localization.h"
#include "platform/PlainText.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class FeedTableModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columns();
    void cells();
    void cellText_isOnePlainLine();
    void longTexts_areCutForTheView();
    void tooltip_saysTheCauseAsItStands();
    void checkBox_invertsTheFeed();
    void headerClick_invertsAll();
    void read_changesOnlyItsRow();
    void changes_comeAsSmallSteps();
    void drag_withinTheTable();
    void drop_fromElsewhere_data();
    void drop_fromElsewhere();
    void modelThatIsGone_isNotTold();
};

namespace {

/// A table over feeds a, b and c, watched by the model tester.
class Table : public FeedListParts
{
public:
    explicit Table(const QString &feeds = u"abc"_s)
    {
        startWith(feeds);
        model = std::make_unique<FeedTableModel>(list, actions);
        tester = std::make_unique<QAbstractItemModelTester>(
            model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        mainThread.drain();
    }
    QString text(int row, int column) const { return model->index(row, column).data().toString(); }

    std::unique_ptr<FeedTableModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

} // namespace

void FeedTableModelTest::columns()
{
    Table table;
    const QStringList identifiers{u"RSSValidate"_s, u"RSSStatus"_s, u"RSSDate"_s, u"RSSName"_s,
                                  u"RSSAddress"_s};
    QCOMPARE(table.model->columnCount(), identifiers.size());
    for (int column = 0; column < identifiers.size(); ++column) {
        QCOMPARE(table.model->headerData(column, Qt::Horizontal, Qt::UserRole).toString(),
                 identifiers[column]);
        QCOMPARE(table.model->headerData(column, Qt::Horizontal).toString(),
                 localized(identifiers[column]));
    }
}

void FeedTableModelTest::cells()
{
    Table table(u"a"_s);
    QCOMPARE(table.text(0, FeedTableModel::Status), u"未読込"_s);
    QCOMPARE(table.text(0, FeedTableModel::Date), u"-"_s);
    QCOMPARE(table.text(0, FeedTableModel::Name), u"A"_s);
    QCOMPARE(table.text(0, FeedTableModel::Address), u"http://a/"_s);
    QCOMPARE(table.model->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(!table.model->index(0, 0).data().isValid());

    table.actions.actCreateRSSURL();
    table.actions.actAddressExec(u"http://x/"_s); // cannot be read
    table.mainThread.drain();
    QCOMPARE(table.text(1, FeedTableModel::Name), u"-"_s);
}

void FeedTableModelTest::cellText_isOnePlainLine()
{
    Table table(u""_s);
    table.web.titles[u"http://n/"_s] = u"two\nlines \u202eturned"_s;
    table.list.appendAddresses({u"http://n/"_s});
    table.mainThread.drain();
    QCOMPARE(table.text(0, FeedTableModel::Name), u"two lines turned"_s);
}

// The view lays out all that it is given, each time it draws a part of it.
void FeedTableModelTest::longTexts_areCutForTheView()
{
    Table table(u"a"_s);
    const QString book(1'000'000, u'x');
    table.list.readerAt(0)->setName(book);
    table.list.readerAt(0)->setAddress(book);
    table.list.renewTableView();
    table.mainThread.drain();
    const QString shown = QString(lineCharacters, u'x') + u'…';
    QCOMPARE(table.text(0, FeedTableModel::Name), shown);
    QCOMPARE(table.text(0, FeedTableModel::Address), shown);
}

void FeedTableModelTest::tooltip_saysTheCauseAsItStands()
{
    Table table(u"a"_s);
    const QModelIndex cell = table.model->index(0, FeedTableModel::Status);
    QVERIFY(!cell.data(Qt::ToolTipRole).isValid() ||
            cell.data(Qt::ToolTipRole).toString().isEmpty());

    QTest::ignoreMessage(QtWarningMsg, "RSS read error.(http://a/)");
    table.list.readerAt(0)->readHeadlines();
    table.list.renewTableView();
    table.mainThread.drain();
    QCOMPARE(table.text(0, FeedTableModel::Status), u"読込エラー"_s);
    QCOMPARE(cell.data(Qt::ToolTipRole).toString(), u"<p>ない &lt;b&gt;404&lt;/b&gt;</p>"_s);
}

void FeedTableModelTest::checkBox_invertsTheFeed()
{
    Table table;
    const QModelIndex box = table.model->index(1, 0);
    QVERIFY(table.model->setData(box, Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(box.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QCOMPARE(table.storedEntries()[1].validate, false);

    // A view that moves rows may try to blank the old place.
    QVERIFY(!table.model->setData(box, QVariant(), Qt::CheckStateRole));
    QVERIFY(!table.model->setData(table.model->index(1, 1), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(table.storedEntries()[1].validate, false);
}

void FeedTableModelTest::headerClick_invertsAll()
{
    Table table;
    table.list.shouldEditTableColumn(0);
    table.model->handleHeaderClick(FeedTableModel::Name);
    QCOMPARE(table.list.validSiteCount(), 2);
    table.model->handleHeaderClick(FeedTableModel::Validate);
    QCOMPARE(table.list.validSiteCount(), 1);
    QCOMPARE(table.model->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(table.model->index(1, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
}

void FeedTableModelTest::read_changesOnlyItsRow()
{
    Table table;
    QSignalSpy changed(table.model.get(), &QAbstractItemModel::dataChanged);
    table.web.titles[u"http://b/"_s] = u"B"_s;
    table.web.itemsIn = u"http://b/"_s;
    QCOMPARE(table.list.readerAt(1)->readHeadlines(), 0);
    table.list.renewTableView();
    QCOMPARE(changed.size(), 0); // the table is told on the main thread
    table.mainThread.drain();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed[0][0].toModelIndex().row(), 1);
    QCOMPARE(changed[0][1].toModelIndex().row(), 1);
    QCOMPARE(table.text(1, FeedTableModel::Status), u"読込済み"_s);
}

void FeedTableModelTest::changes_comeAsSmallSteps()
{
    Table table;
    QSignalSpy inserted(table.model.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(table.model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(table.model.get(), &QAbstractItemModel::modelReset);

    table.list.createReaderWithAddress(u"http://n/"_s, 1, RSSList::AddressMode::Add);
    table.list.renewRSSList();
    table.mainThread.drain();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted[0][1].toInt(), 1);
    QCOMPARE(inserted[0][2].toInt(), 1);

    table.list.removeReader(3);
    table.mainThread.drain();
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed[0][1].toInt(), 3);
    QCOMPARE(table.text(1, FeedTableModel::Address), u"http://n/"_s);
    QCOMPARE(reset.size(), 0);
}

void FeedTableModelTest::drag_withinTheTable()
{
    Table table;
    const std::unique_ptr<QMimeData> drag(
        table.model->mimeData({table.model->index(2, 1), table.model->index(0, 2)}));
    const auto canDrop = [&](int row, const QModelIndex &parent = {}) {
        return table.model->canDropMimeData(drag.get(), Qt::MoveAction, row, 0, parent);
    };
    QVERIFY(canDrop(0));
    QVERIFY(canDrop(1));
    QVERIFY(!canDrop(2));
    QVERIFY(!canDrop(3));
    QVERIFY(!canDrop(-1)); // below the last row, where it stands
    QVERIFY(canDrop(-1, table.model->index(0, 0)));

    QMimeData ofAnotherProgram; // its row 2 is not ours
    const QString type = table.model->mimeTypes().constFirst();
    ofAnotherProgram.setData(type + u'0', "2");
    QVERIFY(!table.model->canDropMimeData(&ofAnotherProgram, Qt::MoveAction, 0, 0, {}));
    QVERIFY(!table.model->dropMimeData(&ofAnotherProgram, Qt::MoveAction, 0, 0, {}));

    QVERIFY(!table.model->dropMimeData(drag.get(), Qt::MoveAction, 3, 0, {}));
    QVERIFY(table.model->dropMimeData(drag.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(table.text(0, FeedTableModel::Name), u"C"_s);
    QCOMPARE(table.storedLetters(), u"cab"_s);
}

void FeedTableModelTest::drop_fromElsewhere_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("canDrop");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<int>("statuses");
    QTest::newRow("http") << u"http://n/"_s << true << u"anb"_s << 0;
    QTest::newRow("feed") << u"feed://n/"_s << true << u"anb"_s << 0;
    // It may be let go over the table, so that the refusal can be explained.
    QTest::newRow("https") << u"https://n/"_s << true << u"ab"_s << 1;
    QTest::newRow("a word") << u"news"_s << false << u"ab"_s << 0;
    QTest::newRow("a row's number as text") << u"1"_s << false << u"ab"_s << 0;
}

void FeedTableModelTest::drop_fromElsewhere()
{
    QFETCH(QString, text);
    Table table(u"ab"_s);
    table.web.titles[u"http://n/"_s] = u"New"_s;
    QMimeData data;
    data.setText(text);
    QTEST(table.model->canDropMimeData(&data, Qt::CopyAction, 1, 0, {}), "canDrop");
    table.model->dropMimeData(&data, Qt::CopyAction, 1, 0, {});
    table.mainThread.drain();
    QTEST(table.letters(), "letters");
    QTEST(static_cast<int>(table.window.statuses.size()), "statuses");
    QCOMPARE(table.model->rowCount(), static_cast<int>(table.letters().size()));
}

void FeedTableModelTest::modelThatIsGone_isNotTold()
{
    Table table;
    table.list.renewTableView();
    table.tester.reset();
    table.model.reset();
    QCOMPARE(table.mainThread.drain(), 1);
}

QTEST_GUILESS_MAIN(FeedTableModelTest)
#include "feedtablemodel_test.moc"
