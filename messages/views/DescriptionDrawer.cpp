// SPDX-License-Identifier: MIT
#include "messages/views/DescriptionDrawer.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"

#include <QKeyEvent>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int lowestDrawer = 48;
constexpr int textMargin = 10;
// More than anybody reads in a panel. One of megabytes would hold the window for many seconds.
constexpr qsizetype longestDescription = 20'000;
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
    if (text == text_)
        return; // not compared with toPlainText(), which has blanks for no-break spaces
    text_ = text;
    isLaidOut_ = false;
    if (isVisible())
        layOut();
}

// To lay out a text costs as much as to draw it, so a panel that is shut waits with it.
void DescriptionDrawer::layOut()
{
    if (std::exchange(isLaidOut_, true))
        return;
    const QString shown = beginning(text_, longestDescription);
    setPlainText(withoutDirectionMarks(shown.size() < text_.size() ? shown + u'…' : shown));
}

void DescriptionDrawer::showEvent(QShowEvent *event)
{
    layOut();
    QPlainTextEdit::showEvent(event);
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
