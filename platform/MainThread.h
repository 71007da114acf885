// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace qovelmor {

/// How other threads reach the main thread, and how the main thread stays alive while it waits.
///
/// Widgets are touched on the main thread only. A worker posts and never waits for the answer.
class MainThread
{
public:
    virtual ~MainThread() = default;

    /// Runs `call` on the main thread, later, in the order of posting. Any thread.
    virtual void post(std::function<void()> call) = 0;

    /// Whether the caller is the main thread.
    virtual bool isCurrent() const = 0;

    /// Main thread only: lets the window paint and runs posted calls for up to `limit`; returns
    /// earlier once something was run. What the user does meanwhile is eaten, not kept.
    virtual void pump(std::chrono::milliseconds limit) = 0;
};

} // namespace qovelmor
