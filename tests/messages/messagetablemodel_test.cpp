// SPDX-License-Identifier: MIT
#include "messages/MessageTableModel.h"
#include "platform/PlainText.h"

#include <QAbstractItemModelTester>
#include <QFont>
#include <QSignalSpy>
#include <QtTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

PresentationSnapshot presentationOf(const MessageSnapshot &messages, int messageIndex)
{
    auto presentation = std::make_shared<MessagePresentation>();
    presentation->messages = messages;
    presentation->messageIndex = messageIndex;
    return presentation;
}

MessageSnapshot numberedMessages(int count)
{
    MessageVector messages(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < messages.size(); ++i)
        messages[i].headline = QString::number(i);
    return std::make_shared<const MessageVector>(std::move(messages));
}

MessageTableModel::FirstSeen firstSeen()
{
    return [](const QString &headline) { return u"seen "_s + headline; };
}

QString cell(const MessageTableModel &model, int row, int column)
{
    return model.index(row, column).data().toString();
}

} // namespace

class MessageTableModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cells_data()
    {
        using Text = std::optional<QString>;
        QTest::addColumn<Text>("date");
        QTest::addColumn<Text>("site");
        QTest::addColumn<Text>("description");
        QTest::addColumn<QStringList>("cells");
        QTest::newRow("everything") << Text(u"11/14 10:30"_s) << Text(u"S"_s) << Text(u"D"_s)
                                    << QStringList{u"1"_s, u"11/14 10:30"_s, u"S"_s, u"*H"_s};
        QTest::newRow("empty parts") << Text(QString()) << Text(QString()) << Text(QString())
                                     << QStringList{u"1"_s, u"*seen H"_s, u""_s, u" H"_s};
        QTest::newRow("absent parts")
            << Text() << Text() << Text() << QStringList{u"1"_s, u"*seen H"_s, u""_s, u" H"_s};
        QTest::newRow("controls and direction marks")
            << Text(u"1\t2"_s) << Text(u"S\u202e"_s) << Text(u"\n"_s)
            << QStringList{u"1"_s, u"1 2"_s, u"S"_s, u"*H"_s};
    }

    void cells()
    {
        QFETCH(std::optional<QString>, date);
        QFETCH(std::optional<QString>, site);
        QFETCH(std::optional<QString>, description);
        MessageTableModel model(firstSeen());
        model.show(presentationOf(std::make_shared<const MessageVector>(MessageVector{
                                      {u"H"_s, date, description, std::nullopt, site}}),
                                  0),
                   false);
        QStringList shown;
        for (int column = 0; column < model.columnCount(); ++column)
            shown.append(cell(model, 0, column));
        QTEST(shown, "cells");
    }

    void markUpStaysText()
    {
        MessageTableModel model(firstSeen());
        model.show(presentationOf(std::make_shared<const MessageVector>(
                                      MessageVector{{u"<b>H</b>"_s, {}, {}, {}, {}}}),
                                  0),
                   false);
        QCOMPARE(cell(model, 0, MessageTableModel::MSGString), u" <b>H</b>"_s);
    }

    // The view lays out all that it is given, each time it draws a part of it.
    void longTextsAreCutForTheView()
    {
        const QString book(9'000'000, u'x');
        MessageTableModel model([](const QString &) { return u"11/14 10:30"_s; });
        model.show(presentationOf(std::make_shared<const MessageVector>(MessageVector{
                                      {book, book, book, book, book}, {book, {}, {}, {}, {}}}),
                                  0),
                   false);
        for (int row = 0; row < model.rowCount(); ++row)
            for (int column = 0; column < model.columnCount(); ++column)
                QVERIFY(cell(model, row, column).size() <= lineCharacters + 2);
        QCOMPARE(cell(model, 0, MessageTableModel::MSGString),
                 u'*' + QString(lineCharacters, u'x') + u'…');
    }

    void newMessagesAreBold()
    {
        MessageVector messages(2);
        messages[1].isNew = true;
        MessageTableModel model(firstSeen());
        model.show(presentationOf(std::make_shared<const MessageVector>(messages), 0), false);
        QVERIFY(!model.index(0, 3).data(Qt::FontRole).isValid());
        const auto font = model.index(1, 3).data(Qt::FontRole).value<QFont>();
        QVERIFY(font.bold());
        QFont view;
        view.setPixelSize(31);
        QCOMPARE(font.resolve(view).pixelSize(), 31); // size and family are the view's
        QVERIFY(font.resolve(view).bold());
    }

    void columnsAreKnownByTheirIdentifiers()
    {
        MessageTableModel model(firstSeen());
        QCOMPARE(model.columnCount(), 4);
        const QStringList identifiers{u"MSGPresent"_s, u"MSGDate"_s, u"MSGTitle"_s, u"MSGString"_s};
        for (int column = 0; column < 4; ++column) {
            QCOMPARE(MessageTableModel::identifier(column), identifiers[column]);
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::UserRole).toString(),
                     identifiers[column]);
            QVERIFY(!model.headerData(column, Qt::Horizontal).toString().isEmpty());
        }
        QVERIFY(!model.headerData(4, Qt::Horizontal).isValid());
        QVERIFY(!model.headerData(-1, Qt::Horizontal).isValid());
    }

    void markMovesWithoutReset()
    {
        MessageTableModel model(firstSeen());
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const auto messages = numberedMessages(5);
        model.show(presentationOf(messages, 1), true);
        QCOMPARE(cell(model, 1, 0), u"▶"_s);
        QCOMPARE(cell(model, 2, 0), u"3"_s);

        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        model.show(presentationOf(messages, 2), true);
        QCOMPARE(resets.count(), 0);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes[0][0].toModelIndex(), model.index(1, 0));
        QCOMPARE(changes[1][0].toModelIndex(), model.index(2, 0));
        QCOMPARE(cell(model, 1, 0), u"2"_s);
        QCOMPARE(cell(model, 2, 0), u"▶"_s);

        model.show(presentationOf(messages, 2), true); // nothing has changed
        QCOMPARE(changes.count(), 2);

        model.show(presentationOf(messages, 2), false); // display stopped
        QCOMPARE(changes.count(), 3);
        QCOMPARE(cell(model, 2, 0), u"3"_s);
    }

    void anotherListResetsTheModel()
    {
        MessageTableModel model(firstSeen());
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.show(presentationOf(numberedMessages(3), 2), true);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        model.show(presentationOf(numberedMessages(1), 2), true); // the mark lies outside
        QCOMPARE(resets.count(), 1);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(cell(model, 0, 0), u"1"_s);
        model.show(presentationOf(numberedMessages(0), 0), true);
        QCOMPARE(model.rowCount(), 0);
    }

    void cellsOutsideGiveNothing()
    {
        MessageTableModel model(firstSeen());
        model.show(presentationOf(numberedMessages(1), 0), false);
        QVERIFY(!model.data(QModelIndex()).isValid());
        QCOMPARE(model.rowCount(model.index(0, 0)), 0);
        QCOMPARE(model.columnCount(model.index(0, 0)), 0);
        QVERIFY(!model.index(1, 0).isValid());
        QVERIFY(!model.index(0, 4).isValid());
    }

    void markOfTenThousandRowsMovesFast()
    {
        MessageTableModel model(firstSeen());
        const auto messages = numberedMessages(10'000);
        model.show(presentationOf(messages, 0), true);
        QElapsedTimer timer;
        timer.start();
        for (int row = 1; row <= 100; ++row)
            model.show(presentationOf(messages, row), true);
        QVERIFY2(timer.elapsed() < 100, "more than 1 ms for each move");
    }
};

QTEST_MAIN(MessageTableModelTest)
#include "messagetablemodel_test.moc"
