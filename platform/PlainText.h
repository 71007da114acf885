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

/// Mark-up for a tooltip that shows the text as it is (forWindow): a tooltip takes what looks like
/// mark-up for mark-up. Empty for an empty text, which means no tooltip.
QString plainTooltip(const QString &text);

} // namespace qovelmor
