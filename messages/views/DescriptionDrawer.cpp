// SPDX-License-Identifier: MIT
#include "messages/views/DescriptionDrawer.h"

#include "platform/Localization.h"
#include "platform/PlainText.h"

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

} // namespace qovelmor
