// SPDX-License-Identifier: MIT
#include "settings/views/LogFilePanel.h"

#include "platform/Localization.h"
#include "platform/views/Alert.h"
#include "settings/needs/SettingsWindow.h"

#include <QFileDialog>
#include <QFileInfo>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

using Chosen = std::function<void(const QString &)>;

void askBeforeReplacing(QWidget &parent, const QString &path, const Chosen &chosen)
{
    openAlert(parent,
              {u"logFileExistsAlert"_s, localized(u"LogFileExists"_s),
               localized(u"LogFileExistsInfo"_s).arg(path), localized(u"Replace"_s),
               localized(u"Cancel"_s)},
              [path, chosen](bool isAccepted) {
                  if (isAccepted)
                      chosen(path);
              });
}

/// The folder, or the nearest one above it that exists: the log's own is made with the first log.
QString nearestFolder(const QString &path)
{
    QString folder = path;
    while (!QFileInfo(folder).isDir() && folder != QFileInfo(folder).path())
        folder = QFileInfo(folder).path();
    return folder;
}

} // namespace

void openLogFilePanel(QWidget *parent, const FilePanel &panel, const QString &present,
                      const Chosen &chosen)
{
    auto *files = new QFileDialog(parent, panel.title, nearestFolder(panel.folder));
    files->setObjectName(u"logFilePanel"_s);
    files->setAttribute(Qt::WA_DeleteOnClose);
    files->setAcceptMode(QFileDialog::AcceptSave);
    files->setFileMode(QFileDialog::AnyFile);
    files->setOption(QFileDialog::DontConfirmOverwrite); // it would ask in a loop of its own
    files->setLabelText(QFileDialog::Accept, panel.button);
    files->selectFile(panel.fileName);
    QObject::connect(files, &QFileDialog::fileSelected, parent,
                     [parent, present, chosen](const QString &path) {
                         if (path != present && QFileInfo::exists(path))
                             askBeforeReplacing(*parent, path, chosen);
                         else
                             chosen(path);
                     });
    files->open();
}

} // namespace qovelmor
