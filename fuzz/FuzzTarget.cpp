// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace qovelmor::fuzz {

using namespace Qt::Literals::StringLiterals;

namespace {

const QTemporaryDir &folder()
{
    static const QString memory = u"/dev/shm"_s;
    static const QTemporaryDir made((QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
                                    u"/qovelmor-fuzz-XXXXXX"_s);
    return made;
}

// What the code under test says about each input would hide what the fuzzer says.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

[[maybe_unused]] const QtMessageHandler silenced = qInstallMessageHandler(&dropMessage);

} // namespace

void promise(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "promise broken: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

QString fileWith(const QByteArray &bytes, const char *name)
{
    const QString path = folder().filePath(QString::fromLatin1(name));
    QFile file(path);
    promise(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "the input can be written to a file");
    return path;
}

void clearFiles()
{
    const QDir present(folder().path());
    for (const QString &name : present.entryList(QDir::Files | QDir::Hidden | QDir::System))
        QFile::remove(present.filePath(name));
}

} // namespace qovelmor::fuzz
