// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qovelmor {

/// The lock of a profile folder: one running program for each. Held as long as the object lives,
/// and given back by the system however the program ends.
class InstanceLock
{
public:
    /// Makes the folder when it is missing. A folder that takes no file cannot be locked; then
    /// nobody is kept out.
    explicit InstanceLock(const QString &profileFolder);
    ~InstanceLock();
    InstanceLock(const InstanceLock &) = delete;
    InstanceLock &operator=(const InstanceLock &) = delete;

    /// Another program holds the lock of this folder.
    bool isHeldByAnother() const { return heldByAnother_; }

private:
    int descriptor_ = -1;
    bool heldByAnother_ = false;
};

} // namespace qovelmor
