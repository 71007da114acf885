// SPDX-License-Identifier: MIT
#include "feeds/views/AddressFilePanel.h"

#include "feeds/AddressFile.h"
#include "platform/Localization.h"
#include "platform/views/Alert.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The user's documents; they may have been moved away, or never have been made.
QString firstFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents).exists() ? documents : QDir::homePath();
}

} // namespace

void AddressFilePanel::open(Direction direction, const FeedFilePanel &panel, Chosen chosen)
{
    const bool isLoad = direction == Direction::Load;
    if (folder_.isEmpty() || !QDir(folder_).exists())
        folder_ = firstFolder();
    auto *dialog = new QFileDialog(&parent_, panel.title, folder_);
    dialog->setObjectName(isLoad ? u"loadURLPanel"_s : u"saveURLPanel"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(isLoad ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog->setFileMode(isLoad ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog->setNameFilter(u"%1 (*.%2)"_s.arg(localized(u"FeedFileKind"_s), panel.fileType));
    dialog->setDefaultSuffix(panel.fileType);
    dialog->setLabelText(QFileDialog::Accept, panel.button);
    if (!panel.fileName.isEmpty())
        dialog->selectFile(panel.fileName);
    QObject::connect(dialog, &QFileDialog::fileSelected, &parent_,
                     [this, chosen = std::move(chosen)](const QString &path) {
                         folder_ = QFileInfo(path).path();
                         chosen(path);
                     });
    dialog->open();
}

void AddressFilePanel::openForLoad(const FeedFilePanel &panel, Chosen chosen)
{
    open(Direction::Load, panel, std::move(chosen));
}

void AddressFilePanel::openForSave(const FeedFilePanel &panel, Chosen chosen)
{
    open(Direction::Save, panel, [this, chosen = std::move(chosen)](const QString &path) {
        const QString written = addressFilePath(path);
        if (written == path || !QFileInfo::exists(written)) {
            chosen(path); // the dialog itself has asked about a file of just this name
            return;
        }
        openAlert(parent_,
                  {u"replaceFileAlert"_s, localized(u"ReplaceFile"_s),
                   localized(u"ReplaceFileInfo"_s).arg(QFileInfo(written).fileName()),
                   localized(u"Replace"_s), u"Cancel"_s},
                  [path, chosen](bool isAccepted) {
                      if (isAccepted)
                          chosen(path);
                  });
    });
}

} // namespace qovelmor
