// SPDX-License-Identifier: MIT
#include "app/GuideWindow.h"

#include "app/GuideText.h"
#include "platform/Localization.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QHBoxLayout>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

// Outside the namespace: a static library's resources are registered by hand.
static void registerGuide()
{
    Q_INIT_RESOURCE(guide);
}

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto guideFolder = u":/guide/"_s;
constexpr QSize factorySize{900, 640};
constexpr int chaptersWidth = 200;
constexpr int pictureWidth = 560; // all of it is seen beside the chapters
constexpr int textMargin = 16;
constexpr int roomAbove = 4;      // of a heading, not so much that the line before it shows
constexpr int deepestChapter = 2; // of the headings, those above this level are listed

/// Shows the pictures no wider than the page.
class GuideBrowser final : public QTextBrowser
{
public:
    QVariant loadResource(int type, const QUrl &name) override
    {
        if (type != QTextDocument::ImageResource)
            return QTextBrowser::loadResource(type, name);
        QImage picture(guideFolder + name.path());
        if (picture.width() > pictureWidth) {
            const qreal widest = qreal(picture.width()) / pictureWidth;
            const qreal ratio = std::min(devicePixelRatioF(), widest);
            picture = picture.scaledToWidth(int(pictureWidth * ratio), Qt::SmoothTransformation);
            picture.setDevicePixelRatio(ratio);
        }
        return picture;
    }
};

void styleTables(QTextFrame &frame)
{
    for (QTextFrame *child : frame.childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(child)) {
            QTextTableFormat format = table->format();
            format.setCellPadding(4);
            format.setCellSpacing(0);
            format.setBorder(1);
            format.setBorderCollapse(true);
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setBorderBrush(Qt::gray);
            table->setFormat(format);
        }
        styleTables(*child);
    }
}

} // namespace

GuideWindow::GuideWindow()
    : guideChapters_(new QListWidget), guideText_(new GuideBrowser), guideSearch_(new QLineEdit)
{
    setObjectName(u"guideWindow"_s);
    setWindowTitle(localized(u"GuideWindow"_s));
    resize(factorySize);
    guideChapters_->setObjectName(u"guideChapters"_s);
    guideChapters_->setAccessibleName(localized(u"GuideChapters"_s));
    guideText_->setObjectName(u"guideText"_s);
    guideText_->setAccessibleName(localized(u"GuideWindow"_s));
    guideText_->setOpenLinks(false);
    // With a cursor one sees that the text has the keys, and selects by them.
    guideText_->setTextInteractionFlags(guideText_->textInteractionFlags() |
                                        Qt::TextSelectableByKeyboard);
    guideText_->document()->setDocumentMargin(textMargin);
    guideSearch_->setObjectName(u"guideSearch"_s);
    guideSearch_->setAccessibleName(localized(u"GuideSearch"_s));
    guideSearch_->setPlaceholderText(localized(u"GuideSearch"_s));
    guideSearch_->setClearButtonEnabled(true);

    auto *side = new QVBoxLayout;
    side->addWidget(guideSearch_);
    side->addWidget(guideChapters_, 1);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(side);
    layout->addWidget(guideText_, 1);
    guideSearch_->setFixedWidth(chaptersWidth);
    guideChapters_->setFixedWidth(chaptersWidth);

    connect(guideChapters_, &QListWidget::currentRowChanged, this, &GuideWindow::showChapter);
    connect(guideSearch_, &QLineEdit::returnPressed, this, &GuideWindow::findNext);
    const auto add = [this](auto keys, auto &&action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    add(QKeySequence::Find, [this] {
        guideSearch_->setFocus();
        guideSearch_->selectAll();
    });
    add(QKeySequence::FindNext, [this] { findNext(); });
    add(QKeySequence::Close, [this] { close(); });
    add(Qt::Key_Escape, [this] { close(); });
}

// Most starts of the program end without a look into the guide: it is read when it is wanted.
void GuideWindow::showEvent(QShowEvent *event)
{
    if (guideChapters_->count() == 0)
        readGuide();
    QWidget::showEvent(event);
}

void GuideWindow::readGuide()
{
    registerGuide();
    QFile file(guideFolder + u"guide.md"_s);
    if (!file.open(QIODevice::ReadOnly))
        return;
    guideText_->setMarkdown(withoutLineBreaks(QString::fromUtf8(file.readAll())));
    styleTables(*guideText_->document()->rootFrame());
    listChapters();
    guideChapters_->setCurrentRow(0);
    guideChapters_->setFocus();
}

void GuideWindow::listChapters()
{
    const QTextDocument &guide = *guideText_->document();
    for (QTextBlock block = guide.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level < 1 || level > deepestChapter)
            continue;
        auto *chapter = new QListWidgetItem(block.text(), guideChapters_);
        chapter->setData(Qt::UserRole, block.position());
    }
}

void GuideWindow::showChapter(int row)
{
    const QListWidgetItem *chapter = guideChapters_->item(row);
    if (chapter == nullptr)
        return;
    const QTextDocument &guide = *guideText_->document();
    const QTextBlock heading = guide.findBlock(chapter->data(Qt::UserRole).toInt());
    const qreal top = guide.documentLayout()->blockBoundingRect(heading).top();
    guideText_->verticalScrollBar()->setValue(int(top) - roomAbove);
}

// From where the last one was; after the last one it begins again at the top.
void GuideWindow::findNext()
{
    const QString word = guideSearch_->text();
    if (word.isEmpty() || guideText_->find(word))
        return;
    guideText_->moveCursor(QTextCursor::Start);
    guideText_->find(word);
}

} // namespace qovelmor
