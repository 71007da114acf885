// SPDX-License-Identifier: MIT
#include "app/StatusRow.h"

#include "messages/MessagePresentation.h"
#include "messages/views/RSSTextField.h"
#include "platform/Localization.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>

#include <algorithm>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto noticeLife = 20s;
constexpr int progressWidth = 160;

} // namespace

StatusRow::StatusRow()
    : warningIcon_(new QLabel)
    , statusText_(new RSSTextField(u"statusText"_s))
    , progressIndi_(new QProgressBar)
    , messageNumberText_(new RSSTextField(u"messageNumberText"_s))
{
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    warningIcon_->setObjectName(u"statusWarning"_s);
    warningIcon_->setAccessibleName(localized(u"StatusWarning"_s));
    warningIcon_->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(iconSize));
    warningIcon_->hide();
    statusText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progressIndi_->setObjectName(u"progressIndi"_s);
    progressIndi_->setAccessibleName(localized(u"ReadProgress"_s));
    progressIndi_->setFormat(u"%v/%m"_s);
    progressIndi_->setFixedWidth(progressWidth);
    progressIndi_->hide();
    messageNumberText_->setHint(localized(u"MessageNumberTip"_s));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(warningIcon_);
    layout->addWidget(statusText_, 1);
    layout->addWidget(progressIndi_);
    layout->addWidget(messageNumberText_);
    setMinimumHeight(progressIndi_->sizeHint().height());

    connect(messageNumberText_, &RSSTextField::doubleClicked, this,
            &StatusRow::messageNumberDoubleClicked);
    noticeLife_.setSingleShot(true);
    noticeLife_.setInterval(noticeLife);
    connect(&noticeLife_, &QTimer::timeout, this, [this] { showNotice(QString()); });
}

void StatusRow::showPresentation(const MessagePresentation &shown)
{
    activity_ = shown.statusText;
    if (!activity_.isEmpty())
        notice_.clear();
    progressIndi_->setVisible(shown.progressRunning && shown.progressMaximum > 0);
    progressIndi_->setMaximum(std::max(shown.progressMaximum, 1));
    progressIndi_->setValue(shown.progressValue);
    messageNumberText_->showText(shown.messageNumber);
    renew();
}

void StatusRow::showFetching(const QString &sentence)
{
    fetching_ = sentence;
    renew();
    statusText_->repaint(); // the fetch keeps the main thread
}

void StatusRow::showNotice(const QString &text)
{
    notice_ = text;
    noticeLife_.start();
    renew();
}

void StatusRow::setProblem(StandingProblem problem, const QString &text)
{
    if (problems_.value(problem) == text)
        return;
    problems_.insert(problem, text);
    renew();
}

QString StatusRow::problems() const
{
    QStringList all(problems_.cbegin(), problems_.cend());
    all.removeAll(QString());
    return all.join(u"  "_s);
}

void StatusRow::renew()
{
    const QString doing = fetching_.isEmpty() ? activity_ : fetching_;
    const bool isBusy = !doing.isEmpty();
    const QString problem = isBusy || !notice_.isEmpty() ? QString() : problems();
    warningIcon_->setVisible(!problem.isEmpty());
    if (isBusy)
        statusText_->showText(doing);
    else
        statusText_->showText(notice_.isEmpty() ? problem : notice_);
}

} // namespace qovelmor
