// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileCalls.h"
#include "platform/PropertyValue.h"

#include <memory>
#include <optional>

namespace qovelmor {

/// The per-user defaults store: written values over registered ones, kept in one XML property list.
///
/// A getter answers from the written value, else from the registered default, else with the zero of
/// its type; a written container, datum or date is no answer to a question for a scalar. Registered
/// defaults are never written. Setters change memory; synchronize() makes the whole store durable:
/// afterwards the file holds either all of it or what it held before. Keys that the program does
/// not know survive. All operations may be called from any thread.
class UserDefaults
{
public:
    /// What opening found. `message` is a sentence for the user (Japanese), empty when all is well.
    struct OpenReport
    {
        bool wasBroken = false;   ///< the file was no property list
        bool wasRestored = false; ///< the values are those of the last good copy
        QString setAsidePath; ///< where the broken file is now; empty when it could not be moved
        QString message;
    };

    /// The store in `path` (XDG Base Directory: `$XDG_CONFIG_HOME/QoVelmorRSS/QoVelmorRSS.plist`);
    /// a symbolic link there is followed and stays one. A missing file is an empty store. One that
    /// is no property list is renamed to `….broken-<date>`; the content before the last save, which
    /// stands beside it as `….bak`, takes its place. What cannot be read at all (no permission, a
    /// device) is left alone and never overwritten.
    explicit UserDefaults(QString path, FileCalls &calls = FileCalls::system());
    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    /// The path that the environment gives for this user.
    static QString defaultPath();

    const OpenReport &openReport() const { return openReport_; }
    const QString &path() const { return path_; }

    /// Adds defaults; a key registered twice keeps the later value.
    void registerDefaults(const PropertyDictionary &defaults);

    bool hasKey(const QString &key) const; ///< written or registered
    bool boolForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    double floatForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;
    QByteArray dataForKey(const QString &key) const;
    /// Nothing when the key is absent or holds another type.
    std::optional<PropertyArray> arrayForKey(const QString &key) const;
    std::optional<PropertyDictionary> dictionaryForKey(const QString &key) const;
    std::optional<PropertyValue> valueForKey(const QString &key) const;

    void setBool(bool value, const QString &key);
    void setInteger(qint64 value, const QString &key);
    void setFloat(double value, const QString &key);
    void setString(const QString &value, const QString &key);
    void setData(const QByteArray &value, const QString &key);
    void setArray(PropertyArray value, const QString &key);
    void setDictionary(PropertyDictionary value, const QString &key);
    void setValue(PropertyValue value, const QString &key);
    /// setValue, unless the written value or else the registered default is this one already: a
    /// default is not written until it changes.
    void setValueIfChanged(PropertyValue value, const QString &key);
    void removeKey(const QString &key);

    /// Writes the store durably (temporary file beside it, every byte checked, file and folder
    /// synced, renamed); nothing is written when nothing changed since the last success. False when
    /// that failed: then memory keeps the values, the old file stays, and lastError() says why.
    bool synchronize();

    /// Why the last synchronize() failed, as a sentence for the user; empty after a success.
    QString lastError() const;

private:
    struct Impl;

    QString path_;
    OpenReport openReport_;
    std::unique_ptr<Impl> impl_;
};

} // namespace qovelmor
