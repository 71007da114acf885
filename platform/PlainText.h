// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The text with a blank for each control character (line ends and tabs too): one line stays one
/// line.
QString withoutControls(const QString &text);

/// The text without the invisible marks that turn the direction of writing; line ends stay.
QString withoutDirectionMarks(const QString &text);

/// withoutControls, and without the invisible marks that turn the direction of writing: a headline
/// cannot rearrange the text around it in a window.
QString forWindow(const QString &text);

/// The first `length` characters of a text, all of a shorter one; a pair of surrogates stays whole
/// or away.
QString beginning(const QString &text, qsizetype length);

/// What a line of a window shows of a text at most: more than a screen is wide. A window lays out
/// the whole text each time it draws a part of it, and a feed may send a headline of megabytes.
constexpr qsizetype lineCharacters = 1000;

/// forWindow for one line of a window: of a text of more than lineCharacters the beginning and an
/// ellipsis.
QString lineForWindow(const QString &text);

/// Mark-up for a tooltip that shows the text as it is (lineForWindow): a tooltip takes what looks
/// like mark-up for mark-up. Empty for an empty text, which means no tooltip.
QString plainTooltip(const QString &text);

} // namespace qovelmor
