// SPDX-License-Identifier: MIT
#pragma once

#include "FeedListParts.h"
#include "feeds/views/FeedListView.h"
#include "platform/views/ListTable.h"
#include "tests/support/Drops.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace qovelmor {

/// The feed table in a window of its own, and the hands of a person who works with it.
class FeedListDesk : public FeedListParts
{
public:
    explicit FeedListDesk(const QString &letters)
    {
        startWith(letters);
        list.saveSiteAddresses(); // a change that must not happen is told from the store too
        view->resize(820, 420);
        view->show();
        (void)QTest::qWaitForWindowExposed(view.get());
        view->activateWindow();
        (void)QTest::qWaitForWindowActive(view.get());
        settle();
    }
    ~FeedListDesk() { settle(); }

    /// Lets what was posted to the window arrive.
    void settle()
    {
        mainThread.drain();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    // Widgets by name. --------------------------------------------------------------------------

    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = view->findChild<Widget *>(QLatin1String(name));
        if (!widget)
            qFatal("there is no %s", name);
        return widget;
    }
    bool isEnabled(const char *button) const { return find<QPushButton>(button)->isEnabled(); }
    /// The alert or panel of this name that is open; null when there is none.
    QDialog *openDialog(const char *name) const
    {
        for (auto *dialog : view->findChildren<QDialog *>(QLatin1String(name))) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }
    ListTable &table() const { return *view->listView(); }
    QString cell(int row, int column) const
    {
        return table().model()->index(row, column).data().toString();
    }

    // The mouse and the keyboard. ---------------------------------------------------------------

    void press(const char *button)
    {
        QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
        settle();
    }
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&table(), which, modifiers);
        settle();
    }
    QPoint pointIn(int row, int column) const
    {
        return table().visualRect(table().model()->index(row, column)).center();
    }
    void click(int row, int column = FeedTableModel::Name)
    {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, pointIn(row, column));
        settle();
    }
    void doubleClick(int row, int column = FeedTableModel::Name)
    {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, pointIn(row, column));
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, pointIn(row, column));
        settle();
    }
    void clickCheckBox(int row)
    {
        const QRect box = table().visualRect(table().model()->index(row, 0));
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {},
                          QPoint(box.left() + box.height() / 2, box.center().y()));
        settle();
    }

    // Drag and drop, as the window system reports it. -------------------------------------------

    /// The place between two rows, above row `target`; below the last one for any number past it.
    QPoint placeAbove(int target) const
    {
        if (target < table().model()->rowCount())
            return {200, table().rowViewportPosition(target)};
        return {200, table().viewport()->height() - 2};
    }
    /// Drags over the place and lets go. True when it was taken.
    bool drop(const QMimeData &data, QPoint place, Qt::DropAction action = Qt::CopyAction,
              Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction)
    {
        lastDrop = dropOn(*table().viewport(), data, place, action, possible);
        settle();
        return lastDrop.isTaken;
    }

    DropOutcome lastDrop;
    std::unique_ptr<FeedListView> view = std::make_unique<FeedListView>(list);
    QSignalSpy statusLine{view.get(), &FeedListView::statusChanged};
};

} // namespace qovelmor
