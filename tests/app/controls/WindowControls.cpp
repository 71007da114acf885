// SPDX-License-Identifier: MIT
#include "WindowControls.h"

#include "messages/views/RSSTextField.h"
#include "messages/views/RSSView.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isToolkitsOwn(const QWidget &widget)
{
    const QWidget *parent = widget.parentWidget();
    return widget.objectName().startsWith(u"qt_"_s) || qobject_cast<const QScrollBar *>(&widget) ||
           qobject_cast<const QHeaderView *>(&widget) || qobject_cast<const QTabBar *>(parent) ||
           qobject_cast<const QTableView *>(parent) || qobject_cast<const QComboBox *>(parent) ||
           qobject_cast<const QLineEdit *>(parent) || parent->inherits("QComboBoxPrivateContainer");
}

bool isControl(const QWidget &widget)
{
    return qobject_cast<const QAbstractButton *>(&widget) ||
           qobject_cast<const QAbstractSpinBox *>(&widget) ||
           qobject_cast<const QAbstractSlider *>(&widget) ||
           qobject_cast<const QAbstractItemView *>(&widget) ||
           qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QLineEdit *>(&widget) ||
           qobject_cast<const QPlainTextEdit *>(&widget) ||
           qobject_cast<const QTextEdit *>(&widget) || qobject_cast<const QTabWidget *>(&widget) ||
           qobject_cast<const RSSView *>(&widget) || qobject_cast<const RSSTextField *>(&widget);
}

QString withoutMarks(QString text)
{
    static const QRegularExpression marks(u"\\(&.\\)|…"_s);
    return text.remove(marks);
}

/// One expression that any text of the table matches.
QRegularExpression tableOfTexts()
{
    QFile file(u":/localization/ja.json"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList alternatives;
    for (const QJsonValue &text : QJsonDocument::fromJson(file.readAll()).object()) {
        QString pattern = QRegularExpression::escape(withoutMarks(text.toString()));
        alternatives << pattern.replace(QRegularExpression(u"\\\\%\\d"_s), u".*"_s);
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(alternatives.join(u'|')),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

QList<QWidget *> controlsOf(const QWidget &window)
{
    QList<QWidget *> found = window.findChildren<QWidget *>();
    found.removeIf([&window](const QWidget *widget) {
        return widget->window() != &window || isToolkitsOwn(*widget) || !isControl(*widget);
    });
    return found;
}

bool isLocalized(const QString &text)
{
    static const QRegularExpression table = tableOfTexts();
    return !text.isEmpty() && table.match(withoutMarks(text)).hasMatch();
}

QString mnemonicOf(const QString &text)
{
    return QKeySequence::mnemonic(text).toString();
}

QMap<QString, QStringList> mnemonicsOf(const QWidget &window)
{
    QStringList texts;
    if (const auto *main = qobject_cast<const QMainWindow *>(&window)) {
        for (const QAction *menu : main->menuBar()->actions())
            texts << menu->text();
    }
    for (const auto *button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible() && button->window() == &window)
            texts << button->text();
    }
    for (const auto *label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && label->window() == &window && label->buddy())
            texts << label->text();
    }
    QMap<QString, QStringList> users;
    for (const QString &text : texts) {
        if (const QString key = mnemonicOf(text); !key.isEmpty())
            users[key] << text;
    }
    return users;
}

} // namespace qovelmor
