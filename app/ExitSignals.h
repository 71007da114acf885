// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace qovelmor {

/// SIGTERM, SIGINT and SIGHUP as a call on the main thread, so that the program ends by its normal
/// way out. One object at a time.
class ExitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit ExitSignals(std::function<void()> requested);
    ~ExitSignals() override;

private:
    void handleSignal();

    std::function<void()> requested_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace qovelmor
