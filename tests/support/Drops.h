// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

namespace qovelmor {

/// What became of a drag from elsewhere.
struct DropOutcome
{
    bool wasOffered = false; ///< it could be let go at that place
    bool isTaken = false;
    Qt::DropAction action = Qt::IgnoreAction; ///< what the source is told
};

/// Drags over the place and lets go, as the window system reports it to a view's viewport.
inline DropOutcome dropOn(QWidget &viewport, const QMimeData &data, QPoint place,
                          Qt::DropAction action = Qt::CopyAction,
                          Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction |
                                                     Qt::LinkAction)
{
    QDragEnterEvent enter(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setDropAction(action);
    QApplication::sendEvent(&viewport, &enter);
    QDragMoveEvent move(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    move.setDropAction(action);
    move.ignore();
    QApplication::sendEvent(&viewport, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(&viewport, &leave);
        return {};
    }
    QDropEvent letGo(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    letGo.setDropAction(move.dropAction());
    letGo.ignore();
    QApplication::sendEvent(&viewport, &letGo);
    return {true, letGo.isAccepted(), letGo.dropAction()};
}

} // namespace qovelmor
