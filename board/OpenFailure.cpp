// SPDX-License-Identifier: MIT
#include "board/OpenFailure.h"

#include <grp.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// The group that may use a device.
QString groupOf(const QByteArray &path)
{
    struct stat status
    {};
    if (::stat(path.constData(), &status) != 0)
        return {};
    std::array<char, 4096> store{};
    group entry{};
    group *found = nullptr;
    if (getgrgid_r(status.st_gid, &entry, store.data(), store.size(), &found) != 0 ||
        found == nullptr)
        return QString::number(status.st_gid);
    return QString::fromUtf8(entry.gr_name);
}

} // namespace

QByteArray openFailureText(const QByteArray &path, const OpenFailure &failure)
{
    QByteArray what;
    switch (failure.step) {
    case OpenFailure::Step::Open:
        what = "Error opening serial port ";
        break;
    case OpenFailure::Step::Claim:
        what = "Error setting TIOCEXCL on ";
        break;
    case OpenFailure::Step::ReadSettings:
        what = "Error getting tty attributes ";
        break;
    case OpenFailure::Step::WriteSettings:
        what = "Error setting tty attributes ";
        break;
    }
    const std::string cause = std::generic_category().message(failure.error);
    return what + (path.isNull() ? QByteArray("(null)") : path) + " - " + cause.c_str() + '(' +
           QByteArray::number(failure.error) + ").\n";
}

QString openFailureAdvice(const QByteArray &path, const OpenFailure &failure)
{
    const QString name = QString::fromUtf8(path);
    switch (failure.error) {
    case EACCES:
    case EPERM:
        return u"%1を開く権限がありません。グループ%2に加わり (sudo usermod -aG %2 $USER)、"
               u"ログインし直してください。"_s.arg(name, groupOf(path));
    case EBUSY:
        return u"%1は他のプログラムが使用中です。"_s.arg(name);
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return u"%1が接続されていません。"_s.arg(name);
    default:
        return {};
    }
}

} // namespace qovelmor
