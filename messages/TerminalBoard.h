// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QImage;

namespace qovelmor {

/// A picture of the on-screen board as lines of braille characters for a terminal with so many
/// places in a line. Two columns by four rows of dots fill a place: a board of four modules takes
/// 64 places and 4 lines. Where twice as many places fit, each dot becomes two by two, so that fine
/// strokes stay apart (128 places and 8 lines). What does not fit is cut on the right. A null
/// picture gives no lines.
QStringList terminalBoard(const QImage &picture, int places);

} // namespace qovelmor
