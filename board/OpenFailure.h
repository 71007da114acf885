// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace qovelmor {

/// Why a line did not open: where it failed, and the system's error number.
struct OpenFailure
{
    enum class Step { Open, Claim, ReadSettings, WriteSettings };

    Step step;
    int error;
};

/// The line for standard output that says so, with its line feed.
QByteArray openFailureText(const QByteArray &path, const OpenFailure &failure);

/// What the person can do about it, as a sentence; empty when there is nothing to say. A missing
/// right names the group that has it, a busy line says that another program holds it.
QString openFailureAdvice(const QByteArray &path, const OpenFailure &failure);

} // namespace qovelmor
