// SPDX-License-Identifier: MIT
#include "ListHouse.h"
#include "messages/views/MessageSwitchesView.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class MessageSwitchesViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void limitIsTheNumberThatWasTyped_data();
    void limitIsTheNumberThatWasTyped();
};

void MessageSwitchesViewTest::limitIsTheNumberThatWasTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("limit");
    QTest::newRow("digits") << u"25"_s << 25;
    QTest::newRow("full-width digits") << u"２０"_s << 20;
    QTest::newRow("something behind") << u" 30件"_s << 30;
    QTest::newRow("no number") << u"x"_s << 0;
    QTest::newRow("below one") << u"-5"_s << 0;
}

void MessageSwitchesViewTest::limitIsTheNumberThatWasTyped()
{
    QFETCH(QString, typed);
    QFETCH(int, limit);
    ListHouse house;
    MessageSwitchesView view(house.list);
    view.show();
    auto *field = view.findChild<QLineEdit *>(u"actMaxMessagesText"_s);
    field->selectAll();
    QInputMethodEvent typing; // what is no ASCII comes from an input method
    typing.setCommitString(typed);
    QCoreApplication::sendEvent(field, &typing);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(house.list.switches()->maxMessages, limit);
    QCOMPARE(field->text(), QString::number(limit));
}

QTEST_MAIN(MessageSwitchesViewTest)
#include "messageswitchesview_test.moc"
