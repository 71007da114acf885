// SPDX-License-Identifier: MIT
#include "messages/InformationFile.h"

#include "platform/TextEncoding.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto fileName = u"Information.txt"_s;

// The bytes of a plain file within the size limit. Opened without blocking, so that a pipe that
// lies in the file's place cannot hold the program.
std::optional<QByteArray> readPlainFile(const QString &path)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return std::nullopt;
    QFile file;
    struct stat status = {};
    const bool isReadable =
        ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size <= InformationFile::sizeLimit &&
        file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    if (!isReadable) {
        ::close(descriptor);
        return std::nullopt;
    }
    const QByteArray bytes = file.read(InformationFile::sizeLimit);
    return file.error() == QFileDevice::NoError ? std::optional(bytes) : std::nullopt;
}

// What most editors write. Looked at by itself because its bytes are by chance Shift_JIS too in one
// text of a few; the other way round that does not happen to a text with kana.
bool isJapaneseInUtf8(const QByteArray &bytes)
{
    constexpr char16_t firstOfThreeBytes = 0x0800;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return !decoder.hasError() && std::any_of(text.begin(), text.end(), [](QChar character) {
        return character.unicode() >= firstOfThreeBytes;
    });
}

// Nothing when the bytes are no Shift_JIS: on the sign they would be a line of wrong characters.
std::optional<QString> textInShiftJis(const QByteArray &bytes)
{
    if (isJapaneseInUtf8(bytes))
        return std::nullopt;
    const QString text = decodeShiftJis(bytes);
    return text.contains(QChar::ReplacementCharacter) ? std::nullopt : std::optional(text);
}

} // namespace

InformationFile::InformationFile(QString folder, QString templatePath)
    : folder_(std::move(folder)), templatePath_(std::move(templatePath))
{}

bool InformationFile::prepareInfoMessages(bool load)
{
    std::optional<QStringList> lines = QStringList(QString());
    if (load) {
        makeReady();
        lines = readLines();
    }
    const std::lock_guard lock(mutex_);
    infoMessages_ = lines.value_or(QStringList());
    presentInfo_ = 1;
    return lines.has_value();
}

// The copy is made writable: what comes out of the program's resources is read-only.
bool InformationFile::makeReady() const
{
    if (!QDir().mkpath(folder_))
        return false;
    if (QFile::exists(path()))
        return true;
    return QFile::copy(templatePath_, path()) &&
           QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                             QFileDevice::ReadGroup | QFileDevice::ReadOther);
}

std::optional<QStringList> InformationFile::readLines() const
{
    const auto bytes = readPlainFile(path());
    const auto text = bytes ? textInShiftJis(*bytes) : std::nullopt;
    return text ? std::optional(text->split(u'\n')) : std::nullopt;
}

QString InformationFile::titleLine() const
{
    const std::lock_guard lock(mutex_);
    return infoMessages_.isEmpty() ? QString() : infoMessages_.constFirst();
}

InformationFile::Interleaved InformationFile::interleaved() const
{
    const std::lock_guard lock(mutex_);
    if (infoMessages_.size() <= 1)
        return {};
    if (presentInfo_ < 0 || presentInfo_ >= infoMessages_.size())
        return {Interleaved::Kind::IndexError, {}};
    return {Interleaved::Kind::Line, infoMessages_[presentInfo_]};
}

void InformationFile::advance()
{
    const std::lock_guard lock(mutex_);
    ++presentInfo_;
    if (presentInfo_ >= infoMessages_.size())
        presentInfo_ = 1;
}

QStringList InformationFile::infoMessages() const
{
    const std::lock_guard lock(mutex_);
    return infoMessages_;
}

int InformationFile::presentInfo() const
{
    const std::lock_guard lock(mutex_);
    return presentInfo_;
}

void InformationFile::setPresentInfo(int index)
{
    const std::lock_guard lock(mutex_);
    presentInfo_ = index;
}

QString InformationFile::path() const
{
    return folder_ + u'/' + fileName;
}

} // namespace qovelmor
