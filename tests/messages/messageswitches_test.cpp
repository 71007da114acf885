// SPDX-License-Identifier: MIT
#include "messages/MessageSwitches.h"
#include "messages/MessageViewSettings.h"
#include "platform/PropertyListFile.h"
#include "platform/UserDefaults.h"

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

using Set = std::function<void(MessageSwitches &)>;
using Get = std::function<PropertyValue(const DisplaySwitches &)>;

class MessageSwitchesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachSwitchIsStoredAtOnce_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("first");
        QTest::addColumn<Set>("set");
        QTest::addColumn<Get>("get");
        QTest::addColumn<QVariant>("changed");
        using M = MessageSwitches;
        using D = DisplaySwitches;
        const auto boolean = [](const char *key, bool first, void (M::*set)(bool), bool D::*field) {
            QTest::newRow(key) << QString::fromLatin1(key) << QVariant(first)
                               << Set([=](M &s) { (s.*set)(!first); })
                               << Get([=](const D &d) { return PropertyValue(d.*field); })
                               << QVariant(!first);
        };
        const auto integer = [](const char *name, const char *key, int first, int given, int kept,
                                void (M::*set)(int), int D::*field) {
            QTest::newRow(name) << QString::fromLatin1(key) << QVariant(first)
                                << Set([=](M &s) { (s.*set)(given); })
                                << Get([=](const D &d) { return PropertyValue(d.*field); })
                                << QVariant(kept);
        };
        boolean("DispLineNumber", false, &M::setIsDispLine, &D::isDispLine);
        boolean("DispTitleDate", true, &M::setIsDispDate, &D::isDispDate);
        boolean("DispSiteName", true, &M::setIsDispName, &D::isDispName);
        boolean("DispDescription", false, &M::setIsDispDesc, &D::isDispDesc);
        boolean("UseMaxMessages", false, &M::setUseMaxMsg, &D::useMaxMsg);
        boolean("DispEachRSS", true, &M::setDispEachRSS, &D::dispEachRSS);
        boolean("ShowCalendarDate", false, &M::setShowCalendar, &D::showCalendar);
        boolean("DispInfoMessages", false, &M::setDispInfo, &D::dispInfo);
        integer("order", "DispMessageOrder", 0, 2, 2, &M::setDispOrder, &D::dispOrder);
        integer("threshold", "FontBoarderValue", 72, 8, 8, &M::setFontBoarder, &D::fontBoarder);
        integer("cap", "MaxSiteMessages", 10, 25, 25, &M::setMaxMessages, &D::maxMessages);
        integer("cap of one", "MaxSiteMessages", 10, 1, 1, &M::setMaxMessages, &D::maxMessages);
        integer("cap of zero", "MaxSiteMessages", 10, 0, 0, &M::setMaxMessages, &D::maxMessages);
        integer("a cap below one is stored as none", "MaxSiteMessages", 10, -5, 0,
                &M::setMaxMessages, &D::maxMessages);
    }

    void eachSwitchIsStoredAtOnce()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, first);
        QFETCH(Set, set);
        QFETCH(Get, get);
        QFETCH(QVariant, changed);
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(u"store.plist"_s));
        MessageSwitches switches(defaults);
        QCOMPARE(get(*switches.snapshot()).toInteger(), first.toLongLong());
        QCOMPARE(defaults.integerForKey(key), first.toLongLong());
        switches.load();
        QCOMPARE(get(*switches.snapshot()).toInteger(), first.toLongLong());

        const auto before = switches.snapshot();
        set(switches);
        QCOMPARE(get(*switches.snapshot()).toInteger(), changed.toLongLong());
        QCOMPARE(get(*before).toInteger(), first.toLongLong()); // a snapshot does not change

        UserDefaults reread(defaults.path());
        MessageSwitches next(reread);
        next.load();
        QCOMPARE(get(*next.snapshot()).toInteger(), changed.toLongLong());
    }

    // Launch hands the threshold on through its setter.
    void defaultIsNotWrittenUntilItChanges()
    {
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(u"store.plist"_s));
        MessageSwitches switches(defaults);
        switches.load();
        switches.setFontBoarder(72);
        switches.setFontName(u"HiraMinPro-W3"_s);
        switches.setIsDispDate(true);
        switches.setMaxMessages(10);
        QVERIFY(!QFile::exists(defaults.path()));
        switches.setFontBoarder(80);
        switches.setFontBoarder(72); // a change back is one
        const auto written = readPropertyListFile(defaults.path()).root;
        QVERIFY(written);
        QVERIFY(*written == PropertyDictionary({{u"FontBoarderValue"_s, 72}}));
    }

    void fontName()
    {
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(u"store.plist"_s));
        MessageSwitches switches(defaults);
        switches.load();
        QCOMPARE(switches.snapshot()->fontName, u"HiraMinPro-W3"_s);
        switches.setFontName(u"IPAexMincho"_s);
        QCOMPARE(switches.snapshot()->fontName, u"IPAexMincho"_s);
        UserDefaults reread(defaults.path());
        QCOMPARE(reread.stringForKey(u"LEDViewFontName"_s), u"IPAexMincho"_s);
    }

    void orders_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("order");
        QTest::newRow("oldest first") << 0 << 0;
        QTest::newRow("newest first") << 1 << 1;
        QTest::newRow("random") << 2 << 2;
        QTest::newRow("unknown") << 3 << 1;
        QTest::newRow("negative") << -1 << 1;
    }

    void orders()
    {
        QFETCH(int, stored);
        DisplaySwitches switches;
        switches.dispOrder = stored;
        QTEST(static_cast<int>(switches.order()), "order");
    }

    void viewSettingsAtTheFirstStart()
    {
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(u"store.plist"_s));
        const MessageViewSettings view(defaults);
        QCOMPARE(view.rowHeight(), 17.0);
        QCOMPARE(view.fontSize(), 12.0);
        QCOMPARE(view.descButtonState(), 0);
        QVERIFY(view.columnWidths().empty());
        QCOMPARE(defaults.integerForKey(u"LEDButtonState"_s), 0);
        QVERIFY(defaults.hasKey(u"LEDButtonState"_s));
    }

    void viewSettingsAreStoredAsGiven()
    {
        QTemporaryDir folder;
        UserDefaults defaults(folder.filePath(u"store.plist"_s));
        MessageViewSettings view(defaults);
        view.setRowHeight(-3.0); // there is no lower bound
        view.setFontSize(10.5);
        view.setDescButtonState(1);
        view.setColumnWidths({30.0, 80.5, 120.0, 400.0});
        UserDefaults reread(defaults.path());
        const MessageViewSettings next(reread);
        QCOMPARE(next.rowHeight(), -3.0);
        QCOMPARE(next.fontSize(), 10.5);
        QCOMPARE(next.descButtonState(), 1);
        QCOMPARE(next.columnWidths(), std::vector<double>({30.0, 80.5, 120.0, 400.0}));
    }
};

QTEST_APPLESS_MAIN(MessageSwitchesTest)
#include "messageswitches_test.moc"
