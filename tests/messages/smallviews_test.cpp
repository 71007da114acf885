// SPDX-License-Identifier: MIT
#include "messages/views/DescriptionDrawer.h"
#include "messages/views/IconedCell.h"
#include "messages/views/RSSTextField.h"
#include "messages/views/RSSView.h"
#include "messages/views/WindowPlace.h"
#include "platform/PlainText.h"

#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The small pieces that the windows of this folder are made of.
class SmallViewsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void view_actsOnTheSecondClick();
    void textField_actsOnTheSecondClick();
    void textField_showsPlainTextOnOneLine();
    void textField_tellsWhatDoesNotFit();
    void textField_takesTheBeginningOfALongText();
    void drawer_keepsItsPlaceWhileTheTextIsTheSame();
    void drawer_takesTheBeginningOfALongText();
    void drawer_isFilledWhileItIsOpen();
    void iconedCell_fillsItselfWithItsImage();
    void iconedCell_withoutImageIsAnOrdinaryCell();
    void placeBeside_data();
    void placeBeside();
};

namespace {

// A cell of 20 by 20 in a picture of 40 by 40, drawn by the delegate.
QImage drawnCell(const QVariant &decoration, const QString &text)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), decoration, Qt::DecorationRole);
    model.setData(model.index(0, 0), text, Qt::DisplayRole);
    QImage picture(40, 40, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QStyleOptionViewItem option;
    option.rect = QRect(10, 10, 20, 20);
    option.state = QStyle::State_Enabled;
    option.palette.setColor(QPalette::Text, Qt::black);
    IconedCell().paint(&painter, option, model.index(0, 0));
    return picture;
}

} // namespace

void SmallViewsTest::view_actsOnTheSecondClick()
{
    RSSView view;
    view.show();
    QSignalSpy acted(&view, &RSSView::doubleClicked);
    QTest::mouseClick(&view, Qt::LeftButton);
    QCOMPARE(acted.count(), 0);
    QTest::mouseDClick(&view, Qt::LeftButton);
    QCOMPARE(acted.count(), 1);
    QTest::mouseDClick(&view, Qt::RightButton);
    QCOMPARE(acted.count(), 1);
}

void SmallViewsTest::textField_actsOnTheSecondClick()
{
    RSSTextField field(u"field"_s);
    field.show();
    QSignalSpy acted(&field, &RSSTextField::doubleClicked);
    QTest::mouseClick(&field, Qt::LeftButton);
    QCOMPARE(acted.count(), 0);
    QTest::mouseDClick(&field, Qt::LeftButton);
    QCOMPARE(acted.count(), 1);
}

void SmallViewsTest::textField_showsPlainTextOnOneLine()
{
    RSSTextField field(u"field"_s);
    field.showText(u"<b>a</b>\nb\u202Ec"_s);
    QCOMPARE(field.text(), u"<b>a</b> bc"_s);
    QCOMPARE(field.textFormat(), Qt::PlainText);
}

void SmallViewsTest::textField_tellsWhatDoesNotFit()
{
    RSSTextField field(u"field"_s);
    field.setHint(u"hint"_s);
    field.resize(400, 20);
    field.showText(u"short"_s);
    QCOMPARE(field.toolTip(), u"hint"_s);
    field.showText(u"<i>"_s + QString(400, u'x'));
    QVERIFY(
        field.toolTip().startsWith(u"<p>&lt;i&gt;xxx"_s)); // a tooltip would take it for mark-up
    field.resize(8000, 20);
    QTest::qWait(0);
    field.show();
    QCOMPARE(field.toolTip(), u"hint"_s);
    QVERIFY(field.minimumSizeHint().width() < 40); // a long text does not hold a window open
}

void SmallViewsTest::textField_takesTheBeginningOfALongText()
{
    RSSTextField field(u"field"_s);
    field.showText(QString(1'000'000, u'x'));
    QCOMPARE(field.text(), QString(lineCharacters, u'x') + u'…');
}

// Every notice of the list hands the description over once more.
void SmallViewsTest::drawer_keepsItsPlaceWhileTheTextIsTheSame()
{
    DescriptionDrawer drawer(u"drawer"_s);
    drawer.resize(300, 60);
    drawer.show();
    // What its toPlainText() gives back is another text.
    const QString text = u"no-break\u00a0space, direction\u202e mark\n"_s.repeated(100);
    drawer.showDescription(text);
    QScrollBar *bar = drawer.verticalScrollBar();
    bar->setValue(bar->maximum());
    QVERIFY(bar->value() > 0);
    const int place = bar->value();
    drawer.showDescription(text);
    QCOMPARE(bar->value(), place);
    drawer.hide();
    drawer.show();
    QCOMPARE(bar->value(), place);
    drawer.showDescription(text + u'x');
    QCOMPARE(bar->value(), 0);
}

void SmallViewsTest::drawer_takesTheBeginningOfALongText()
{
    DescriptionDrawer drawer(u"drawer"_s);
    drawer.show();
    drawer.showDescription(QString(20'000, u'x'));
    QCOMPARE(drawer.toPlainText(), QString(20'000, u'x'));
    drawer.showDescription(QString(100'000, u'x'));
    QCOMPARE(drawer.toPlainText(), QString(20'000, u'x') + u'…');
}

void SmallViewsTest::drawer_isFilledWhileItIsOpen()
{
    DescriptionDrawer drawer(u"drawer"_s);
    drawer.showDescription(u"first"_s);
    QCOMPARE(drawer.toPlainText(), QString());
    drawer.show();
    QCOMPARE(drawer.toPlainText(), u"first"_s);
    drawer.hide();
    drawer.showDescription(u"second"_s);
    drawer.showDescription(QString());
    QCOMPARE(drawer.toPlainText(), u"first"_s);
    drawer.show();
    QCOMPARE(drawer.toPlainText(), QString());
}

void SmallViewsTest::iconedCell_fillsItselfWithItsImage()
{
    QPixmap image(3, 3);
    image.fill(Qt::red);
    for (const QVariant &decoration :
         {QVariant(image), QVariant(image.toImage()), QVariant(QIcon(image.scaled(64, 64)))}) {
        const QImage picture = drawnCell(decoration, u"text"_s);
        QCOMPARE(picture.pixelColor(11, 11), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(28, 28), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(9, 20), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(30, 20), QColor(Qt::white));
    }
}

void SmallViewsTest::iconedCell_withoutImageIsAnOrdinaryCell()
{
    const QImage picture = drawnCell({}, u"■"_s);
    bool isDrawn = false;
    for (int y = 10; y < 30; ++y)
        for (int x = 10; x < 30; ++x)
            isDrawn = isDrawn || picture.pixelColor(x, y).lightness() < 128;
    QVERIFY(isDrawn);
}

void SmallViewsTest::placeBeside_data()
{
    QTest::addColumn<QRect>("other");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("below") << QRect(100, 0, 800, 500) << QPoint(100, 500);
    QTest::newRow("above") << QRect(100, 400, 800, 400) << QPoint(100, 250);
    QTest::newRow("right") << QRect(0, 0, 300, 800) << QPoint(300, 0);
    QTest::newRow("left") << QRect(700, 0, 300, 800) << QPoint(0, 0);
    QTest::newRow("nowhere: the lower edge") << QRect(0, 0, 1000, 800) << QPoint(0, 650);
    QTest::newRow("below, but not past the right edge")
        << QRect(600, 0, 400, 500) << QPoint(300, 500);
}

void SmallViewsTest::placeBeside()
{
    QFETCH(QRect, other);
    QFETCH(QPoint, place);
    QCOMPARE(qovelmor::placeBeside(other, QSize(700, 150), QRect(0, 0, 1000, 800)), place);
}

QTEST_MAIN(SmallViewsTest)
#include "smallviews_test.moc"
