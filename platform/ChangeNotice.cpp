// SPDX-License-Identifier: MIT
#include "platform/ChangeNotice.h"

#include "platform/MainThread.h"

namespace qovelmor {

// Shared with the posted calls, which may outlive the notice.
struct ChangeNotice::State
{
    std::atomic<bool> pending = false;
    std::vector<std::function<void()>> listeners;
};

ChangeNotice::ChangeNotice(MainThread &mainThread)
    : mainThread_(mainThread), state_(std::make_shared<State>())
{}

ChangeNotice::~ChangeNotice()
{
    state_->listeners.clear();
}

void ChangeNotice::listen(std::function<void()> listener)
{
    state_->listeners.push_back(std::move(listener));
}

void ChangeNotice::changed()
{
    if (state_->pending.exchange(true))
        return;
    mainThread_.post([state = state_] {
        state->pending = false;
        for (const auto &listener : state->listeners)
            listener();
    });
}

} // namespace qovelmor
