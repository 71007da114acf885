// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <unistd.h>

namespace qovelmor {

/// What a running process takes of the machine, as the system tells it.
class ProcessUse
{
public:
    explicit ProcessUse(qint64 process) : folder_(QStringLiteral("/proc/%1").arg(process)) {}

    long memoryKiB() const { return number("VmRSS:"); }
    /// The most memory since the start or the last forgetPeak().
    long peakMemoryKiB() const { return number("VmHWM:"); }
    /// Of the processor, by all of its threads, since the start.
    double processorSeconds() const
    {
        QFile file(folder_ + QStringLiteral("/stat"));
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QByteArray line = file.readAll();
        // Behind the name, which may hold blanks, the time stands in fields 12 and 13.
        const auto fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
        return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
    }
    long threads() const { return number("Threads:"); }
    long descriptors() const
    {
        return static_cast<long>(
            QDir(folder_ + QStringLiteral("/fd")).entryList(QDir::Files | QDir::System).size());
    }
    bool forgetPeak() const
    {
        QFile file(folder_ + QStringLiteral("/clear_refs"));
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
    }

private:
    long number(const QByteArray &name) const
    {
        QFile file(folder_ + QStringLiteral("/status"));
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith(name))
                return line.mid(name.size()).simplified().split(' ').front().toLong();
        }
        return -1;
    }

    QString folder_;
};

/// Whether this build's checks cost memory and time of their own.
constexpr bool isSanitized()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#else
    return false;
#endif
}

} // namespace qovelmor
