// SPDX-License-Identifier: MIT
#include "app/GuideText.h"
#include "app/GuideWindow.h"

#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The user guide as the program shows it.
class GuideWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreJoined_data();
    void linesAreJoined();
    void chapters_areThoseOfTheFile();
    void pictures_areThereAndFit();
    void tables_areTables();
    void chapter_comesToTheTop();
    void search_goesRound();
    void search_withoutAHit_leavesTheText();
    void keys_closeTheWindow_data();
    void keys_closeTheWindow();
};

namespace {

/// The window, shown.
struct Guide
{
    Guide()
    {
        window.show();
        QApplication::setActiveWindow(&window);
    }
    QTextBrowser &text() const { return *window.findChild<QTextBrowser *>(u"guideText"_s); }
    QListWidget &chapters() const { return *window.findChild<QListWidget *>(u"guideChapters"_s); }
    void search(const QString &word) const
    {
        QTest::keyClick(&text(), Qt::Key_F, Qt::ControlModifier);
        auto *field = window.findChild<QLineEdit *>(u"guideSearch"_s);
        QVERIFY(field->hasFocus());
        QTest::keyClicks(field, word);
        QTest::keyClick(field, Qt::Key_Return);
    }

    GuideWindow window;
};

QString sourceFile()
{
    QFile file(qEnvironmentVariable("QOVELMOR_SOURCE_DIR") + u"/docs/guide.md"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void GuideWindowTest::linesAreJoined_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    QTest::newRow("between kanji") << u"電光\n掲示板"_s << u"電光掲示板"_s;
    QTest::newRow("after a letter") << u"LED\n電光"_s << u"LED 電光"_s;
    QTest::newRow("after a comma") << u"は、\nLED"_s << u"は、LED"_s;
    QTest::newRow("between letters") << u"the\nsign"_s << u"the sign"_s;
    QTest::newRow("in an item") << u"- 一\n  二\n- 三"_s << u"- 一二\n- 三"_s;
    QTest::newRow("numbered") << u"1. 一\n2. 二"_s << u"1. 一\n2. 二"_s;
    QTest::newRow("paragraphs") << u"一\n\n二"_s << u"一\n\n二"_s;
    QTest::newRow("heading") << u"# 一\n二"_s << u"# 一\n二"_s;
    QTest::newRow("table") << u"| 一 |\n|---|\n| 二 |"_s << u"| 一 |\n|---|\n| 二 |"_s;
    QTest::newRow("picture") << u"![一](a.png)\n\n二"_s << u"![一](a.png)\n\n二"_s;
    QTest::newRow("code") << u"    one\n    two"_s << u"    one\n    two"_s;
}

void GuideWindowTest::linesAreJoined()
{
    QFETCH(QString, written);
    QTEST(withoutLineBreaks(written), "read");
}

void GuideWindowTest::chapters_areThoseOfTheFile()
{
    QStringList expected;
    for (const QString &line : sourceFile().split(u'\n')) {
        if (line.startsWith(u"# "_s) || line.startsWith(u"## "_s))
            expected << line.section(u' ', 1);
    }
    QVERIFY(expected.size() > 5);
    const Guide guide;
    QStringList shown;
    for (int row = 0; row < guide.chapters().count(); ++row)
        shown << guide.chapters().item(row)->text();
    QCOMPARE(shown, expected);
}

void GuideWindowTest::pictures_areThereAndFit()
{
    static const QRegularExpression picture(u"!\\[[^\\]]*\\]\\(([^)]+)\\)"_s);
    const Guide guide;
    int pictures = 0;
    for (const auto &match : picture.globalMatch(sourceFile())) {
        ++pictures;
        const auto image = guide.text()
                               .loadResource(QTextDocument::ImageResource, QUrl(match.captured(1)))
                               .value<QImage>();
        QVERIFY2(!image.isNull(), qPrintable(match.captured(1)));
        QVERIFY(image.deviceIndependentSize().width() < guide.text().viewport()->width());
    }
    QVERIFY(pictures > 5);
    QCOMPARE(guide.text().horizontalScrollBar()->maximum(), 0);
}

void GuideWindowTest::tables_areTables()
{
    const Guide guide;
    int tables = 0;
    for (const QTextFrame *frame : guide.text().document()->rootFrame()->childFrames())
        tables += qobject_cast<const QTextTable *>(frame) ? 1 : 0;
    QVERIFY(tables >= 5);
    QVERIFY(!guide.text().toPlainText().contains(u"|"_s));
}

void GuideWindowTest::chapter_comesToTheTop()
{
    const Guide guide;
    for (const int row : {3, 1}) {
        guide.chapters().setCurrentRow(row);
        const QTextCursor top = guide.text().cursorForPosition(QPoint(20, 20));
        QCOMPARE(top.block().text(), guide.chapters().item(row)->text());
    }
}

void GuideWindowTest::search_goesRound()
{
    const Guide guide;
    guide.search(u"dialout"_s); // stands in one place
    const QTextCursor first = guide.text().textCursor();
    QCOMPARE(first.selectedText(), u"dialout"_s);
    QTest::keyClick(&guide.text(), Qt::Key_F3);
    QCOMPARE(guide.text().textCursor().selectedText(), u"dialout"_s);
    QCOMPARE(guide.text().textCursor().position(), first.position());
}

void GuideWindowTest::search_withoutAHit_leavesTheText()
{
    const Guide guide;
    guide.search(u"no such word"_s);
    QVERIFY(!guide.text().textCursor().hasSelection());
    QVERIFY(guide.window.isVisible());
}

void GuideWindowTest::keys_closeTheWindow_data()
{
    QTest::addColumn<QKeyCombination>("key");
    QTest::newRow("Esc") << QKeyCombination(Qt::Key_Escape);
    QTest::newRow("Ctrl+W") << QKeyCombination(Qt::CTRL | Qt::Key_W);
}

void GuideWindowTest::keys_closeTheWindow()
{
    QFETCH(QKeyCombination, key);
    const Guide guide;
    QTest::keyClick(&guide.chapters(), key.key(), key.keyboardModifiers());
    QVERIFY(!guide.window.isVisible());
}

QTEST_MAIN(GuideWindowTest)
#include "guidewindow_test.moc"
