// SPDX-License-Identifier: MIT
#include "SettingsTab.h"
#include "platform/Localization.h"
#include "tests/support/DesktopWithEditor.h"

#include <QLabel>
#include <QPushButton>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The button that shows the log. A program of its own: what is installed is looked up once for
/// each process.
class LogViewerTest : public QObject
{
    Q_OBJECT

    DesktopWithEditor desktop_;

private Q_SLOTS:
    void log_isOpenedWithItsApplication()
    {
        SettingsTab tab;
        tab.start();
        const auto &note = tab.control<QLabel>(u"logNote"_s);
        tab.control<QAbstractButton>(u"logSystem"_s).click();
        QTest::mouseClick(&tab.control<QPushButton>(u"actDispLog"_s), Qt::LeftButton);
        QTRY_COMPARE(desktop_.opened(), tab.home.filePath(u"Documents/QoVelmorRSS/Logbook.txt"_s));
        QVERIFY(!note.isVisible());
    }

    void log_withoutAnApplication_isSaid()
    {
        desktop_.uninstall();
        SettingsTab tab;
        tab.start();
        tab.control<QAbstractButton>(u"logSystem"_s).click();
        QTest::mouseClick(&tab.control<QPushButton>(u"actDispLog"_s), Qt::LeftButton);
        const auto &note = tab.control<QLabel>(u"logNote"_s);
        QVERIFY(note.isVisible());
        QCOMPARE(note.text(), localized(u"LogFileShowError"_s));
    }
};

QTEST_MAIN(LogViewerTest)
#include "logviewer_test.moc"
