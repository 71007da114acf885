// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// What the person is told when the port cannot be had back.
struct PortLossAlert
{
    QString title;
    QString text;
    QString button;
};

/// Told once when a port that was open cannot be opened again; the application controller answers.
class PortLoss
{
public:
    virtual ~PortLoss() = default;

    /// Any thread; posts to the main thread and returns at once. There the alert is shown, and its
    /// button ends the program.
    virtual void portLost(const PortLossAlert &alert) = 0;
};

} // namespace qovelmor
