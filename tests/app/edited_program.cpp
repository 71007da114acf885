// SPDX-License-Identifier: MIT
// The real program with a hand at its widgets that never rests: enables and disables feeds, adds
// and deletes some. Before each edit it prints "do" and the list that will be, after it "done"
// and the list that the window shows (a button may be grey for a moment); whoever started it kills
// it at any moment and compares. With the argument "torn" it is the control: a writer that cuts the
// file and writes it anew, which must be caught.
#include "app/CommandLine.h"
#include "app/Program.h"
#include "feeds/FeedTableModel.h"
#include "platform/PropertyListFile.h"
#include "platform/UserDefaults.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

// The timer window has buttons of the same names.
template <typename Widget>
Widget *widget(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == u"mainWindow"_s)
            return window->findChild<Widget *>(name);
    }
    return nullptr;
}

void click(const QString &name)
{
    if (auto *button = widget<QAbstractButton>(name))
        button->click();
}

class Editor
{
public:
    Editor(QString server, unsigned seed) : server_(std::move(server)), random_(seed) {}

    /// While one edit waits for the display to rest, no other begins.
    void editOnce()
    {
        if (isEditing_)
            return;
        isEditing_ = true;
        edit();
        isEditing_ = false;
    }

private:
    void edit()
    {
        auto *table = widget<QTableView>(u"rssListView"_s);
        if (table == nullptr)
            return;
        QAbstractItemModel &model = *table->model();
        const int rows = model.rowCount();
        switch (random_() % 4) {
        case 0:
            if (rows < 40)
                return add(model, *table);
            [[fallthrough]];
        case 1:
            if (rows > 20)
                return removeRow(model, *table, static_cast<int>(random_() % unsigned(rows)));
            [[fallthrough]];
        default:
            toggle(model, static_cast<int>(random_() % unsigned(rows)));
        }
    }

    static QString line(const QAbstractItemModel &model, int row, bool isFlipped)
    {
        const QModelIndex box = model.index(row, FeedTableModel::Validate);
        const bool isOn = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return (isOn != isFlipped ? u"+"_s : u"-"_s) +
               model.index(row, FeedTableModel::Address).data().toString();
    }

    static QStringList list(const QAbstractItemModel &model, int flipped = -1)
    {
        QStringList lines;
        for (int row = 0; row < model.rowCount(); ++row)
            lines << line(model, row, row == flipped);
        return lines;
    }

    static void say(const char *what, const QStringList &lines = {})
    {
        std::printf("%s %s\n", what, qPrintable(lines.join(u' ')));
        std::fflush(stdout);
    }

    void toggle(QAbstractItemModel &model, int row)
    {
        say("do", list(model, row));
        const QModelIndex box = model.index(row, FeedTableModel::Validate);
        const bool isOn = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model.setData(box, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        say("done", list(model));
    }

    void add(const QAbstractItemModel &model, QTableView &table)
    {
        const int rows = model.rowCount();
        const QString address = server_ + u"/new%1"_s.arg(++added_);
        table.clearSelection();
        table.setCurrentIndex({});
        say("do", list(model) + QStringList(u'+' + address));
        click(u"createButton"_s);
        if (auto *text = widget<QLineEdit>(u"addressText"_s)) {
            text->setText(address);
            click(u"actAddressExec"_s);
            // The name is fetched first, and painting goes on meanwhile.
            [[maybe_unused]] const bool isThere =
                QTest::qWaitFor([&] { return model.rowCount() == rows + 1; });
        }
        say("done", list(model));
    }

    void removeRow(const QAbstractItemModel &model, QTableView &table, int row)
    {
        QStringList left = list(model);
        left.removeAt(row);
        say("do", left);
        table.selectRow(row);
        click(u"deleteButton"_s);
        for (QWidget *window : QApplication::allWidgets()) {
            auto *alert = qobject_cast<QMessageBox *>(window);
            if (alert != nullptr && alert->isVisible())
                alert->defaultButton()->click();
        }
        [[maybe_unused]] const bool isGone =
            QTest::qWaitFor([&] { return model.rowCount() == left.size(); });
        say("done", list(model));
    }

    QString server_;
    std::mt19937 random_;
    int added_ = 0;
    bool isEditing_ = false;
};

/// What the program must not do.
[[noreturn]] void writeInPlace()
{
    const QString path = UserDefaults::defaultPath();
    const auto content = readPropertyListFile(path);
    const QByteArray bytes = writePropertyList(*content.root).value_or(QByteArray());
    std::printf("do \n");
    std::fflush(stdout);
    for (;;) {
        const int file = ::open(qPrintable(path), O_WRONLY | O_TRUNC);
        for (qsizetype at = 0; at < bytes.size(); at += 4096)
            [[maybe_unused]] const auto written =
                ::write(file, bytes.constData() + at,
                        static_cast<std::size_t>(std::min<qsizetype>(4096, bytes.size() - at)));
        ::close(file);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.contains(u"torn"_s))
        writeInPlace();
    Program program({});
    Editor editor(arguments.value(1), arguments.value(2).toUInt());
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&editor] { editor.editOnce(); });
    timer.start(0);
    return program.run();
}
