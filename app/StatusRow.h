// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

namespace qovelmor {

class RSSTextField;
struct MessagePresentation;

/// What stands in the way of the program and stays so until it is mended, most urgent first.
enum class StandingProblem { Store, Board, Feeds, Information };

/// The status line: what the program is doing, or else the answer to what the user did last, or
/// else what is wrong. Beside it the progress of a read and the number of the message on display.
class StatusRow final : public QWidget
{
    Q_OBJECT

public:
    StatusRow();

    void showPresentation(const MessagePresentation &shown);
    /// What is being fetched apart from a read, at once on the screen; empty when that is over.
    void showFetching(const QString &sentence);
    /// A sentence that gives way to the next read, or to a problem after a while.
    void showNotice(const QString &text);
    /// Shown while nothing else is; an empty text takes it away.
    void setProblem(StandingProblem problem, const QString &text);

Q_SIGNALS:
    /// A double click on the number of the message on display.
    void messageNumberDoubleClicked();

private:
    void renew();
    QString problems() const;

    QLabel *warningIcon_;
    RSSTextField *statusText_;
    QProgressBar *progressIndi_;
    RSSTextField *messageNumberText_;
    QString activity_;
    QString fetching_;
    QString notice_;
    QMap<StandingProblem, QString> problems_;
    QTimer noticeLife_;
};

} // namespace qovelmor
