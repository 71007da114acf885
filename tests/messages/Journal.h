// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <mutex>

namespace qovelmor {

/// What the stand-ins of a test were asked to do, in order, from any thread.
class Journal
{
public:
    void add(const QString &event)
    {
        const std::lock_guard lock(mutex_);
        events_.append(event);
    }
    QStringList events() const
    {
        const std::lock_guard lock(mutex_);
        return events_;
    }
    /// The events so far; the journal begins anew.
    QStringList take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(events_, {});
    }

private:
    mutable std::mutex mutex_;
    QStringList events_;
};

} // namespace qovelmor
