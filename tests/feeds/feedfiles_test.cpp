// SPDX-License-Identifier: MIT
#include "FeedListDesk.h"
#include "feeds/AddressFile.h"
#include "platform/Localization.h"
#include "platform/views/AnswerableWindow.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

QFileDialog *openPanel(FeedListDesk &desk, const char *action, const char *panel)
{
    desk.find<QAction>(action)->trigger();
    desk.settle();
    return qobject_cast<QFileDialog *>(desk.openDialog(panel));
}

void choose(FeedListDesk &desk, QFileDialog &panel, const QString &path)
{
    auto *name = panel.findChild<QLineEdit *>(u"fileNameEdit"_s);
    QVERIFY(name);
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
    desk.settle();
}

} // namespace

/// The feed list goes out into a file and comes back from one.
class FeedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void import();
    void import_thatTakesLong_canBeBrokenOff_data();
    void import_thatTakesLong_canBeBrokenOff();
    void import_ofABrokenFile_isSaid();
    void exporting_data();
    void exporting();
    void export_asksBeforeAnotherFileIsReplaced_data();
    void export_asksBeforeAnotherFileIsReplaced();
    void export_thatFails_isSaid();
    void export_thatCouldNotBeReadAgain_isSaid();
};

void FeedFilesTest::import()
{
    FeedListDesk desk(u"ab"_s);
    desk.web.titles[u"http://n/"_s] = u"New"_s;
    const QString path = desk.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://a/"_s}));
    for (const QString &letters : {u"abna"_s, u"abnana"_s}) { // each import appends
        QFileDialog *panel = openPanel(desk, "actLoadURL", "loadURLPanel");
        QVERIFY(panel);
        QCOMPARE(panel->windowTitle(), localized(u"TitleLoadURL"_s));
        QCOMPARE(panel->labelText(QFileDialog::Accept), localized(u"Execute"_s));
        QVERIFY(panel->nameFilters().constFirst().contains(u"*.rssurl"_s));
        QSignalSpy fetched(desk.view.get(), &FeedListView::addressBeingFetched);
        choose(desk, *panel, path);
        QCOMPARE(desk.storedLetters(), letters);
        const QString sentence = localized(u"FetchingAddress"_s);
        QCOMPARE(fetched.size(), 4); // each address, and that it is over
        QCOMPARE(fetched[0][1].toString(), sentence.arg(u"http://n/"_s) + u" (1/2)"_s);
        QCOMPARE(fetched[2][1].toString(), sentence.arg(u"http://a/"_s) + u" (2/2)"_s);
        QCOMPARE(fetched[3][1].toString(), QString());
    }
    QCOMPARE(desk.cell(2, FeedTableModel::Name), u"New"_s);
}

void FeedFilesTest::import_thatTakesLong_canBeBrokenOff_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("the button") << 0;
    QTest::newRow("Escape") << 1;
    QTest::newRow("the window's close button") << 2;
}

void FeedFilesTest::import_thatTakesLong_canBeBrokenOff()
{
    QFETCH(int, way);
    FeedListDesk desk(u"ab"_s);
    const QString path = desk.folder.filePath(u"list.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://n/"_s, u"http://o/"_s}));
    QFileDialog *chooser = openPanel(desk, "actLoadURL", "loadURLPanel");
    QVERIFY(chooser);
    desk.web.duringLoad = [&] { // a server that takes its time
        QTRY_VERIFY(desk.openDialog("importPanel"));
        QDialog *panel = desk.openDialog("importPanel");
        QVERIFY(isAnswerable(*panel));
        QCOMPARE(panel->windowTitle(), localized(u"TitleLoadURL"_s));
        QCOMPARE(desk.find<QProgressBar>("importProgress")->maximum(), 2);
        QVERIFY(desk.find<QLabel>("importText")->text().contains(u"http://n/"));
        if (way == 0)
            QTest::mouseClick(desk.find<QPushButton>("actImportCancel"), Qt::LeftButton);
        else if (way == 1)
            QTest::keyClick(panel, Qt::Key_Escape);
        else
            panel->close();
        QCOMPARE(desk.find<QLabel>("importText")->text(), localized(u"ImportCancelling"_s));
    };
    choose(desk, *chooser, path);
    QCOMPARE(desk.web.requested, QStringList{u"http://n/"_s});
    QVERIFY(!desk.openDialog("importPanel"));
    QCOMPARE(desk.storedLetters(), u"ab"_s);
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"ImportCancelled"_s));
}

void FeedFilesTest::import_ofABrokenFile_isSaid()
{
    FeedListDesk desk(u"ab"_s);
    QFile file(desk.folder.filePath(u"bad.rssurl"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("no list");
    file.close();
    QFileDialog *panel = openPanel(desk, "actLoadURL", "loadURLPanel");
    QVERIFY(panel);
    QTest::ignoreMessage(QtWarningMsg, "File read error.");
    choose(desk, *panel, file.fileName());
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"FeedFileReadError"_s));
    QCOMPARE(desk.letters(), u"ab"_s);
}

void FeedFilesTest::exporting_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("with the extension") << u"mine.rssurl"_s;
    QTest::newRow("without extension") << u"mine"_s;
    QTest::newRow("with another extension") << u"mine.txt"_s;
}

void FeedFilesTest::exporting()
{
    QFETCH(QString, typed);
    FeedListDesk desk(u"ab"_s);
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    QCOMPARE(panel->windowTitle(), localized(u"TitleSaveURL"_s));
    QCOMPARE(panel->labelText(QFileDialog::Accept), localized(u"Execute"_s));
    QCOMPARE(panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"untitled.rssurl"_s);
    choose(desk, *panel, desk.folder.filePath(typed));
    QCOMPARE(readAddressFile(desk.folder.filePath(u"mine.rssurl"_s)),
             (QStringList{u"http://a/"_s, u"http://b/"_s}));
}

void FeedFilesTest::export_asksBeforeAnotherFileIsReplaced_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("replace") << true;
    QTest::newRow("Cancel") << false;
}

void FeedFilesTest::export_asksBeforeAnotherFileIsReplaced()
{
    QFETCH(bool, isReplaced);
    FeedListDesk desk(u"ab"_s);
    const QString path = desk.folder.filePath(u"mine.rssurl"_s);
    QVERIFY(writeAddressFile(path, {u"http://old/"_s}));
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    choose(desk, *panel, desk.folder.filePath(u"mine.txt"_s));

    QVERIFY(desk.openDialog("replaceFileAlert"));
    QCOMPARE(readAddressFile(path), QStringList{u"http://old/"_s});
    QTest::mouseClick(
        desk.find<QPushButton>(isReplaced ? "replaceFileAlertAccept" : "replaceFileAlertCancel"),
        Qt::LeftButton);
    QCOMPARE(readAddressFile(path), isReplaced ? (QStringList{u"http://a/"_s, u"http://b/"_s})
                                               : QStringList{u"http://old/"_s});
}

void FeedFilesTest::export_thatFails_isSaid()
{
    FeedListDesk desk(u"ab"_s);
    QVERIFY(QDir().mkpath(desk.folder.filePath(u"mine.rssurl"_s))); // a folder of that name
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    QTest::ignoreMessage(QtWarningMsg, "File save error.");
    choose(desk, *panel, desk.folder.filePath(u"mine.txt"_s));
    QTest::mouseClick(desk.find<QPushButton>("replaceFileAlertAccept"), Qt::LeftButton);
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"FeedFileSaveError"_s));
}

void FeedFilesTest::export_thatCouldNotBeReadAgain_isSaid()
{
    FeedListDesk desk(u"a"_s);
    desk.list.readerAt(0)->setAddress(u"http://"_s + QString(1024 * 1024, u'x'));
    QFileDialog *panel = openPanel(desk, "actSaveURL", "saveURLPanel");
    QVERIFY(panel);
    const QString path = desk.folder.filePath(u"mine.rssurl"_s);
    QTest::ignoreMessage(QtWarningMsg, "File save error.");
    choose(desk, *panel, path);
    QCOMPARE(desk.statusLine.last()[0].toString(), localized(u"FeedFileTooLong"_s));
    QVERIFY(!QFile::exists(path));
}

QTEST_MAIN(FeedFilesTest)
#include "feedfiles_test.moc"
