// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>

namespace qovelmor {

/// A colour as bytes for the defaults store: QColor's own stream form, fixed to Qt 6.0 so that
/// later versions of Qt read it too.
QByteArray archivedColor(const QColor &color);

/// The colour of archivedColor(); red when the bytes are no such archive, because a board without a
/// stored colour is red.
QColor unarchivedColor(const QByteArray &archive);

} // namespace qovelmor
