// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace qovelmor {

class MainThread;

/// "Something changed, look again." Any thread calls changed(); the listeners run on the main
/// thread and compute what to show from the state at that time, so a late notice does no harm.
/// At most one notice is pending, however often changed() is called.
class ChangeNotice
{
public:
    explicit ChangeNotice(MainThread &mainThread);
    ~ChangeNotice();
    ChangeNotice(const ChangeNotice &) = delete;
    ChangeNotice &operator=(const ChangeNotice &) = delete;

    /// Main thread only. The listener must live as long as the notice or be a no-op afterwards.
    void listen(std::function<void()> listener);

    /// Any thread; never waits.
    void changed();

private:
    struct State;

    MainThread &mainThread_;
    std::shared_ptr<State> state_;
};

} // namespace qovelmor
