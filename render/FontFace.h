// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>

namespace qovelmor {

/// The installed family that stands for a font name of the settings.
///
/// An installed family stands for itself. The default name, which no Linux system has, stands for
/// the first mincho family found: IPAex Mincho, IPA Mincho, Noto Serif CJK, then any family with
/// Japanese glyphs whose name says mincho. Every other unknown name gives Qt's default family.
/// Callable from any thread; needs a QGuiApplication.
QString fontFamilyFor(const QString &fontName);

/// The face of that family at this many pixels to the em.
QFont fontFor(const QString &fontName, int pixelSize);

} // namespace qovelmor
