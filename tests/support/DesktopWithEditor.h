// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace qovelmor {

/// A desktop with one application, an editor that writes down what it was given. To be made before
/// anything asks what is installed: the answer is looked up once for each process.
class DesktopWithEditor
{
public:
    DesktopWithEditor()
    {
        const QByteArray data = QFile::encodeName(folder_.path());
        qputenv("XDG_DATA_HOME", data);
        qputenv("XDG_DATA_DIRS", data);
        QDir(folder_.path()).mkpath(QStringLiteral("applications"));
        // Renamed into place: the reader never sees half of it.
        write(QStringLiteral("editor"),
              "#!/bin/sh\nprintf %s \"$1\" > \"$0.part\" && mv \"$0.part\" \"$0.got\"\n");
        QFile::setPermissions(program(), QFile::ReadOwner | QFile::ExeOwner);
        write(QStringLiteral("applications/editor.desktop"),
              "[Desktop Entry]\nType=Application\nName=Editor\nMimeType=text/plain;\nExec=" +
                  QFile::encodeName(program()) + " %F\n");
        write(QStringLiteral("applications/mimeinfo.cache"),
              "[MIME Cache]\ntext/plain=editor.desktop;\n");
    }
    QString opened() const
    {
        QFile got(program() + QStringLiteral(".got"));
        return got.open(QFile::ReadOnly) ? QFile::decodeName(got.readAll()) : QString();
    }
    void forget() { QFile::remove(program() + QStringLiteral(".got")); }
    void uninstall() { QFile::remove(program()); }

private:
    QString program() const { return folder_.filePath(QStringLiteral("editor")); }
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder_.filePath(name));
        QVERIFY(file.open(QFile::WriteOnly) && file.write(content) == content.size());
    }

    QTemporaryDir folder_;
};

} // namespace qovelmor
