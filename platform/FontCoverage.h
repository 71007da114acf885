// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

namespace qovelmor {

/// The families of the installed fonts that hold a glyph for `character`, by every name they have;
/// "Serif", "Sans Serif" and "Monospace" where the font chosen for the user's language holds it.
/// Answered from the font system's own index: no font is opened, which with a large Japanese one
/// costs a megabyte of memory for as long as the toolkit keeps it.
QSet<QString> fontFamiliesCovering(char32_t character);

} // namespace qovelmor
