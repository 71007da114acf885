// SPDX-License-Identifier: MIT
#pragma once

#include "ScheduleParts.h"
#include "platform/views/ListTable.h"
#include "schedule/views/TimerDialog.h"
#include "schedule/views/TimerView.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

namespace qovelmor {

/// The timer window, shown, over a schedule with everything around it.
class TimerParts : public ScheduleParts
{
public:
    explicit TimerParts(const std::vector<TMRData> &stored = {})
    {
        view = std::make_unique<TimerView>(schedule);
        start(stored);
        mainThread.drain();
        view->show();
        QApplication::setActiveWindow(view.get());
    }

    template <typename Control = QWidget>
    Control &control(const QString &name) const
    {
        auto *found = view->findChild<Control *>(name);
        if (found == nullptr)
            qFatal("no control %s", qPrintable(name));
        return *found;
    }
    ListTable &table() const { return control<ListTable>(QStringLiteral("timerView")); }
    TimerDialog &dialog() const { return control<TimerDialog>(QStringLiteral("timerPanel")); }
    /// The alert that is open; null when there is none.
    QWidget *alert() const
    {
        auto *found = view->findChild<QWidget *>(QStringLiteral("deleteTimerAlert"));
        return found != nullptr && found->isVisible() ? found : nullptr;
    }

    void click(const QString &name) const
    {
        QWidget &target = control(name);
        QTest::mouseClick(&target, Qt::LeftButton, {}, QPoint(8, target.height() / 2));
    }
    QPoint cell(int row, int column) const
    {
        return table().visualRect(table().model()->index(row, column)).center();
    }
    void clickCell(int row, int column) const
    {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cell(row, column));
    }
    void doubleClickCell(int row, int column) const
    {
        clickCell(row, column);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, cell(row, column));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(&table(), key, modifiers);
    }
    QString text(int row, int column) const
    {
        return table().model()->index(row, column).data().toString();
    }
    /// What the table shows: the addresses of the rows, which all start the display.
    QStringList shownNames() const
    {
        QStringList names;
        for (int row = 0; row < table().model()->rowCount(); ++row)
            names << text(row, 4);
        return names;
    }
    QStringList storedNames() const
    {
        QStringList names;
        for (const TMRData &timer : storedTimers())
            names << timer.address();
        return names;
    }

    std::unique_ptr<TimerView> view;
};

/// Timers that start the display, named by their addresses.
inline std::vector<TMRData> namedTimers(const QStringList &names)
{
    std::vector<TMRData> timers;
    timers.reserve(static_cast<std::size_t>(names.size()));
    for (const QString &name : names)
        timers.push_back(dailyTimer(0, TimerOperation::StartDisplay, name));
    return timers;
}

} // namespace qovelmor
