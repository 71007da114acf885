// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyListFile.h"

namespace qovelmor {

/// Writes values in the XML form, into one text and in one walk: the store is written whole after
/// each change, with ten thousand messages in it. Each line begins with one tab for each level, as
/// other writers of the format do.
class PropertyListWriter
{
public:
    explicit PropertyListWriter(const PropertyListLimits &limits);

    /// Writes a whole document. False when a reader with the same limits would refuse it.
    bool write(const PropertyValue &root);
    const QByteArray &document() const { return document_; }

    /// How many bytes a text takes at most, for those who keep what others send.
    static qint64 mostBytesOf(QStringView text);

    /// Write one value; writeValue() chooses by its type.
    void operator()(bool flag);
    void operator()(qint64 number);
    void operator()(double number);
    void operator()(const QString &text);
    void operator()(const QByteArray &bytes);
    void operator()(const QDateTime &date);
    void operator()(const PropertyValue::Shared<PropertyArray> &items);
    void operator()(const PropertyValue::Shared<PropertyDictionary> &dictionary);

private:
    void writeValue(const PropertyValue &value);
    void writeElement(QByteArrayView name, QByteArrayView content);
    void writeEmptyElement(QByteArrayView name);
    void beginElement(QByteArrayView name);
    void endElement(QByteArrayView name);
    void beginLine();
    bool isWithinLimits() const;

    PropertyListLimits limits_;
    QByteArray document_;
    int depth_ = 0; ///< elements that are open, the outermost one not counted
    int deepest_ = 0;
    int elements_ = 0;
};

} // namespace qovelmor
