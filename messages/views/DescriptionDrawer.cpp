// SPDX-License-Identifier: MIT
#include "messages/views/DescriptionDrawer.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"

#include <QKeyEvent>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int lowestDrawer = 48;
constexpr int textMargin = 10;
} // namespace

DescriptionDrawer::DescriptionDrawer(const QString &name, QWidget *parent) : QPlainTextEdit(parent)
{
    setObjectName(name);
    setAccessibleName(localized(u"DescriptionDrawer"_s));
    setPlaceholderText(localized(u"NoDescription"_s));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    setMinimumHeight(lowestDrawer);
    document()->setDocumentMargin(textMargin);
    hide();
}

void DescriptionDrawer::showDescription(const QString &text)
{
    const QString plain = withoutDirectionMarks(text);
    if (plain != toPlainText())
        setPlainText(plain);
}

// While the panel has the keyboard, copying means its text and not a row of the table.
bool DescriptionDrawer::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy) && textCursor().hasSelection())
        event->accept();
    return QPlainTextEdit::event(event);
}

} // namespace qovelmor
