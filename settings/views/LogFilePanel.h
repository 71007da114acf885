// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace qovelmor {

struct FilePanel;

/// Opens the panel that chooses the log file. A log starts as an empty file, so one that exists is
/// asked about before `chosen` is called; `present` is the log's own file, which needs no question.
void openLogFilePanel(QWidget *parent, const FilePanel &panel, const QString &present,
                      const std::function<void(const QString &)> &chosen);

} // namespace qovelmor
