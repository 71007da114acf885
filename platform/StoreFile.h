// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileCalls.h"
#include "platform/PropertyValue.h"

#include <QString>

namespace qovelmor {

/// The file of the defaults store and its last good copy: what is on the disk is never lost and
/// never half written. Not for use by two threads at once.
///
/// Beside `name` there may stand `name.bak` (the content before the last save, a second name of the
/// same file, so it costs no write), `name.broken-<date>` (what was no property list when the
/// program started) and, during a save, a hidden temporary file.
class StoreFile
{
public:
    enum class State {
        missing,   ///< no file yet
        good,      ///< loaded
        broken,    ///< not a property list with a dictionary at its root
        unreadable ///< not to be read or no plain file; it is left alone
    };

    /// Follows a symbolic link at `path` and clears away what dead processes left of their saves.
    StoreFile(const QString &path, FileCalls &calls);

    /// What load() found and did.
    struct Loaded
    {
        State state = State::missing;
        int error = 0; ///< errno value when unreadable
        bool isCopy = false;
        QString setAsidePath;
        PropertyDictionary values;
    };

    /// Reads the file; a broken one is set aside and the last good copy is read and put in its
    /// place.
    Loaded load();

    /// Replaces the file durably. Gives 0 or the errno value of what failed; a broken file that
    /// could not be set aside so far is tried again first and never overwritten.
    int save(const PropertyDictionary &values);

private:
    void loadCopy(Loaded &loaded);
    int setAside();
    QString freeBrokenPath() const;

    QString path_;
    FileCalls &calls_;
    int refusal_ = 0;           ///< errno value why the present file must not be replaced
    bool isPresentBad_ = false; ///< the file in place is the broken one
    QString asidePath_;         ///< the broken file's second name, once it has one
};

} // namespace qovelmor
