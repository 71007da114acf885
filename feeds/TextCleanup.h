// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace qovelmor {

/// Asked at the beginning of each pass of a clean-up loop; true ends the loop.
using CleanupWatch = std::function<bool()>;

/// A description without its mark-up, or nothing when the watch ended the work.
///
/// The rules, one after the other until none applies: everything from the first "<a" to the first
/// "/a>" goes (with one line feed behind it); then "<span" to "/span>"; then "<" to ">"; an opening
/// mark whose closing one is missing takes the rest of the text along; then each "&nbsp;" becomes a
/// blank. At the end the text is cut before "&lt;" and control characters become blanks.
///
/// The closing mark counts wherever it stands. Where it stands before the opening one, the rules
/// copy what lies between, mostly without an end; that is seen at once and answered like a loop
/// that the watch ended. Every text takes time in proportion to its length, and the result keeps no
/// more than twice the memory that it needs.
std::optional<QString> withoutMarkup(QString text, const CleanupWatch &watch);

/// Without leading blanks (U+0020) and ideographic blanks (U+3000) in any mixture.
std::optional<QString> withoutHeadSpace(const QString &text, const CleanupWatch &watch);

/// Without trailing characters up to U+0020; a trailing ideographic blank stays.
std::optional<QString> withoutTailSpace(const QString &text, const CleanupWatch &watch);

} // namespace qovelmor
