// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace qovelmor {

/// One item of the menu of board fonts.
struct FontItem
{
    QString fontName;
    QString title;
    bool isChecked = false;
};

/// The installed font families that can draw "漢", in the platform's order; the stored one carries
/// the mark. Needs a QGuiApplication; main thread.
std::vector<FontItem> createFontMenu(const QString &checkedFontName);

} // namespace qovelmor
