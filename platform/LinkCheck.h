// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace qovelmor {

/// The address of a link that may be opened: a well-formed, absolute `http` or `https` address (RFC
/// 3986) with a host and without a user part. Nothing for everything else: scripts, local files,
/// options of programs, relative addresses, blanks and control characters inside.
std::optional<QUrl> checkedLink(const QString &text);

} // namespace qovelmor
