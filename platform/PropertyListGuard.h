// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyListFile.h"

namespace qovelmor {

/// Whether `bytes` are one whole, well-formed XML document in UTF-8 without entity declarations and
/// within the limits. The property list library itself takes cut documents for whole ones, and its
/// recursion ends the process on a document of a million levels.
bool isSafePropertyList(const QByteArray &bytes, const PropertyListLimits &limits);

} // namespace qovelmor
