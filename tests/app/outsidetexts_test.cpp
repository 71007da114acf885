// SPDX-License-Identifier: MIT
// Whatever a feed writes into its names, headlines, descriptions, links and errors is shown as it
// is written: no label, tooltip or alert takes it for mark-up, and nothing turns the direction of
// writing.
#include "WindowedProgram.h"
#include "app/StartupWindow.h"
#include "platform/PlainText.h"
#include "platform/views/Alert.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <set>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto outside = u"太<b>い</b><img src='http://h/x'>\u202eabc\u2066 &lt;"_s;
const auto goodAddress = u"http://太/<b>a</b>\u202e"_s;
const auto badAddress = u"http://太/<i>b</i>\u202e"_s;

QString document()
{
    const QString text = outside.toHtmlEscaped();
    return u"<rss version='2.0'><channel><title>%1</title><item><title>%1</title><link>%1</link>"
           "<description>%2</description><pubDate>%1</pubDate></item></channel></rss>"_s.arg(
               text, text.toHtmlEscaped());
}

/// Looks at every text of every window and notes where one from outside stands.
class Inspection
{
public:
    void look()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            lookAt(*window);
            for (QWidget *widget : window->findChildren<QWidget *>())
                lookAt(*widget);
            for (const QAction *action : window->findChildren<QAction *>())
                judgePlain(*action, action->text());
        }
    }

    QStringList faults;
    std::set<QString> places; ///< names of the widgets that showed a text from outside

private:
    void lookAt(QWidget &widget)
    {
        judgeRich(widget, widget.toolTip());
        judgePlain(widget, widget.windowTitle());
        judgePlain(widget, widget.accessibleName());
        if (const auto *label = qobject_cast<QLabel *>(&widget)) {
            judgePlain(widget, label->text());
            if (label->textFormat() != Qt::PlainText && holdsMarkUp(label->text()))
                blame(widget, label->text());
        }
        if (const auto *button = qobject_cast<QAbstractButton *>(&widget))
            judgePlain(widget, button->text());
        if (const auto *panel = qobject_cast<QPlainTextEdit *>(&widget))
            judgePlain(widget, panel->toPlainText());
        if (const auto *page = qobject_cast<QTextEdit *>(&widget))
            blame(widget, page->toPlainText()); // it would read mark-up
        if (const auto *view = qobject_cast<QAbstractItemView *>(&widget); view && view->model())
            lookAtCells(widget, *view->model());
    }
    void lookAtCells(QWidget &view, const QAbstractItemModel &model)
    {
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int column = 0; column < model.columnCount(); ++column) {
                const QModelIndex cell = model.index(row, column);
                judgePlain(view, cell.data().toString());
                judgeRich(view, cell.data(Qt::ToolTipRole).toString());
            }
        }
    }

    static bool holdsMarkUp(const QString &text)
    {
        return text.contains(u"<b>") || text.contains(u"<i>") || text.contains(u"<img");
    }
    /// A text that is shown as it is.
    void judgePlain(const QObject &object, const QString &text)
    {
        if (text.contains(u'太'))
            places.insert(object.objectName());
        if (withoutDirectionMarks(text) != text)
            blame(object, text);
    }
    /// A text that is read as mark-up where it looks like it.
    void judgeRich(const QObject &object, const QString &text)
    {
        if (text.contains(u'太'))
            places.insert(object.objectName() + u" tooltip"_s);
        if (holdsMarkUp(text) || withoutDirectionMarks(text) != text)
            blame(object, text);
    }
    void blame(const QObject &object, const QString &text)
    {
        faults << object.objectName() + u": "_s + text;
    }
};

} // namespace

class OutsideTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextOfTheWindows_isPlain()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"RSS read error"_s));
        Inspection inspection;
        WindowedProgram p;
        p.addFeed(goodAddress, {});
        p.addFeed(badAddress, {});
        p.loader.serveDocument(goodAddress, document());
        p.loader.serveDocument(badAddress, u"<rss>&太;</rss>"_s);
        auto sites = *p.defaults.arrayForKey(u"RSSSiteAddresses"_s);
        auto first = *sites[0].get<PropertyDictionary>();
        first.set(u"RSSNameString"_s, u""_s); // the name is fetched while the start window stands
        sites[0] = first;
        p.defaults.setArray(sites, u"RSSSiteAddresses"_s);
        p.loader.onLoad = [&] {
            if (p.mainThread.isCurrent())
                inspection.look();
        };
        p.launchOnTab(tab::list);
        inspection.look();
        for (const int row : {0, 1}) {
            p.selectRow(p.find<QTableView>(u"rssListView"_s), row);
            inspection.look();
        }
        p.click(u"createButton"_s);
        p.find<QLineEdit>(u"addressText"_s)->setText(goodAddress);
        p.click(u"actAddressExec"_s);

        p.control.startReadRSS();
        p.mainWindow.selectTab(tab::message);
        p.item(u"actDescriptionDrawer"_s)->trigger();
        p.control.startDispRSS();
        p.sleep(500ms);
        p.settle();
        inspection.look();
        p.control.actDrawerButton(); // the window of the sign takes the description over
        p.control.actDescriptionDrawer();
        p.sleep(500ms);
        p.settle();
        inspection.look();
        p.loader.onLoad = {};

        QVERIFY2(inspection.faults.isEmpty(), qPrintable(inspection.faults.join(u"\n"_s)));
        for (const auto &place :
             {u"accessField"_s, u"addressWaitText"_s, u"statusText"_s, u"rssListView"_s,
              u"rssListView tooltip"_s, u"msgListView"_s, u"descriptionDrawer"_s, u"ledDrawer"_s})
            QVERIFY2(inspection.places.count(place) == 1, qPrintable(place));
    }

    void alerts_arePlain_data()
    {
        QTest::addColumn<bool>("asks");
        QTest::newRow("an alert") << false;
        QTest::newRow("a question") << true;
    }
    void alerts_arePlain()
    {
        QFETCH(bool, asks);
        WindowedProgram p;
        p.launch();
        if (asks)
            openAlert(p.mainWindow, {u"question"_s, outside, outside, u"A"_s, u"B"_s}, [](bool) {});
        else
            p.mainWindow.showAlert(outside, outside, u"了解"_s, {});
        auto *alert = p.mainWindow.findChild<QMessageBox *>();
        QVERIFY(alert != nullptr);
        int texts = 0;
        for (const QLabel *label : alert->findChildren<QLabel *>()) {
            if (!label->text().contains(u'太'))
                continue;
            ++texts;
            QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
        }
        QCOMPARE(texts, 2);
        const QPointer<QMessageBox> shown(alert);
        alert->close();
        QTRY_VERIFY(!shown);
    }
};

QTEST_MAIN(OutsideTextsTest)
#include "outsidetexts_test.moc"
