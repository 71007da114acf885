// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

class RSSReader;

/// A sentence for the status line: which feed could not be read, and why. Empty when the last
/// attempt gave something, or when none was made.
QString failureSentence(const RSSReader &reader);

} // namespace qovelmor
