// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace qovelmor {

/// How a second start of the program reaches the first one: a name on the session bus for each
/// profile. The instance lock decides who is first; the bus only carries the wish to be seen.
class RaiseService final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "net.qovelmor.QoVelmorRSS")

public:
    /// `profileFolder` tells the profiles apart. `raise` runs on the main thread.
    RaiseService(const QString &profileFolder, std::function<void()> raise);
    ~RaiseService() override;

    /// From the second start: asks the first to show itself. False when nobody answers.
    static bool raiseFirst(const QString &profileFolder);

public Q_SLOTS:
    void raiseWindow();

private:
    QString name_;
    std::function<void()> raise_;
};

} // namespace qovelmor
