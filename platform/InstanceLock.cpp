// SPDX-License-Identifier: MIT
#include "platform/InstanceLock.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

InstanceLock::InstanceLock(const QString &profileFolder)
{
    QDir().mkpath(profileFolder);
    const QByteArray path = QFile::encodeName(profileFolder + u"/lock"_s);
    descriptor_ = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0)
        heldByAnother_ = errno == EWOULDBLOCK;
}

// The file stays: removing it would let a third start lock a new file while a second one already
// holds the old.
InstanceLock::~InstanceLock()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

} // namespace qovelmor
