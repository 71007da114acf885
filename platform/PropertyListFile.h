// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyValue.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace qovelmor {

/// Property lists in their XML form (the DTD "PropertyList-1.0"), from and to bytes and files.

/// Dates of the format count from the first moment of 2001, in UTC.
inline constexpr qint64 propertyListEpoch = 978'307'200;

/// What a reader accepts at most. Files come from anywhere: a person drops them on a window.
struct PropertyListLimits
{
    qint64 bytes = 96 * 1024 * 1024;
    int depth = 64;
    int elements = 4'000'000;
};

/// The root value of an XML property list. Nothing for bytes that are not whole and well-formed XML
/// in UTF-8, that declare entities, that pass a limit, or that are no property list. An integer
/// beyond 64 signed bits wraps; a number or date that cannot be read counts 0.
std::optional<PropertyValue> parsePropertyList(const QByteArray &bytes,
                                               const PropertyListLimits &limits = {});

/// The XML form of `root`, UTF-8. Reals are written so that they read back equal; "not a number"
/// and infinite ones are written as 0. Characters that XML cannot hold (most control characters)
/// are written as U+FFFD, so what is written always parses. Dates are kept to the second, and to
/// the years 1933 to 2068. Nothing for a value larger or deeper than a reader with the same limits
/// accepts.
std::optional<QByteArray> writePropertyList(const PropertyValue &root,
                                            const PropertyListLimits &limits = {});

/// What reading a file gave: the value, or why there is none.
struct PropertyListContent
{
    std::optional<PropertyValue> root;
    int error = 0; ///< errno value; 0 although there is no root: the content is no property list
};

/// Reads a property list file; FIFOs, devices and folders are refused (EINVAL, EISDIR), files over
/// the limit too (EFBIG).
PropertyListContent readPropertyListFile(const QString &path,
                                         const PropertyListLimits &limits = {});

/// Writes `root` to `path` in place, for an export that a person asked for. Gives 0 or the errno
/// value of what failed; a value over the limits is EFBIG and leaves the file as it is.
int writePropertyListFile(const QString &path, const PropertyValue &root,
                          const PropertyListLimits &limits = {});

} // namespace qovelmor
