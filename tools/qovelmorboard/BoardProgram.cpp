// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardProgram.h"

#include "tools/qovelmorboard/BoardWindow.h"
#include "tools/qovelmorboard/ControlCommands.h"
#include "tools/qovelmorboard/FontGlyphs.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <utility>

namespace qovelmor::simboard {

namespace {

constexpr std::chrono::milliseconds refreshTime{33};
constexpr std::size_t longestControlLine = 1000;

void print(const std::string &text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

std::size_t terminalColumns()
{
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 2)
        return size.ws_col;
    return 80;
}

/// Appends what can be read; false when there is nothing any more.
bool readMore(int descriptor, std::string &text)
{
    std::array<char, 512> bytes{};
    const auto count = ::read(descriptor, bytes.data(), bytes.size());
    if (count <= 0)
        return false;
    text.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
}

} // namespace

BoardProgram::BoardProgram(const ProgramOptions &options, int signalDescriptor)
    : options_(options), signalDescriptor_(signalDescriptor)
{
    if (options_.window)
        window_ = std::make_unique<BoardWindow>();
    if (!options_.framesFolder.isEmpty())
        frames_ = std::make_unique<FrameWriter>(options_.framesFolder, options_.mostFrames);
    refreshTimer_.setTimerType(Qt::PreciseTimer);
    connect(&refreshTimer_, &QTimer::timeout, this, &BoardProgram::refresh);
}

BoardProgram::~BoardProgram()
{
    print(terminal_.finish());
    if (controlDescriptor_ >= 0) {
        ::close(controlDescriptor_);
        QFile::remove(options_.controlPath);
    }
}

bool BoardProgram::start()
{
    std::string error;
    board_ = SimulatedBoard::create(options_.board, error);
    if (!board_) {
        std::fprintf(stderr, "qovelmorboard: %s\n", error.c_str());
        return false;
    }
    board_->setGlyphs(fontGlyphs());
    for (const auto &[name, value] : options_.variables)
        board_->setVariable(name, value);
    if (!options_.controlPath.isEmpty() && !listen()) {
        std::perror("qovelmorboard: control socket");
        return false;
    }
    watch(signalDescriptor_, &BoardProgram::handleSignal);
    if (options_.commandsFromInput)
        watch(STDIN_FILENO, &BoardProgram::handleInput);
    print(board_->path() + "\n");
    if (window_)
        window_->show();
    if (window_ || frames_ || options_.terminal)
        refreshTimer_.start(refreshTime);
    return true;
}

void BoardProgram::watch(int descriptor, void (BoardProgram::*readable)())
{
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, readable);
}

// Orders. ----------------------------------------------------------------------------------------

bool BoardProgram::listen()
{
    const std::string path = QFile::encodeName(options_.controlPath).toStdString();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    controlDescriptor_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (controlDescriptor_ < 0)
        return false;
    // What a program that was killed left behind; anything but a socket stays.
    struct stat there = {};
    if (::lstat(path.c_str(), &there) == 0 && S_ISSOCK(there.st_mode))
        ::unlink(path.c_str());
    if (::bind(controlDescriptor_, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(controlDescriptor_, 4) != 0) {
        ::close(std::exchange(controlDescriptor_, -1));
        return false;
    }
    watch(controlDescriptor_, &BoardProgram::handleConnection);
    return true;
}

void BoardProgram::handleSignal()
{
    QCoreApplication::quit();
}

void BoardProgram::handleInput()
{
    if (readMore(STDIN_FILENO, input_)) {
        print(obeyLines(input_));
        return;
    }
    // The input has ended; a readable end of file must not be reported for ever.
    for (QSocketNotifier *notifier : findChildren<QSocketNotifier *>()) {
        if (notifier->socket() == STDIN_FILENO)
            notifier->setEnabled(false);
    }
}

void BoardProgram::handleConnection()
{
    const int client =
        ::accept4(controlDescriptor_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (client < 0)
        return;
    auto *notifier = new QSocketNotifier(client, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this,
            [this, client, notifier] { handleClient(client, notifier); });
}

void BoardProgram::handleClient(int descriptor, QSocketNotifier *notifier)
{
    std::string text = notifier->property("rest").toByteArray().toStdString();
    if (!readMore(descriptor, text)) {
        notifier->setEnabled(false);
        notifier->deleteLater();
        ::close(descriptor);
        return;
    }
    const std::string answer = obeyLines(text);
    ::send(descriptor, answer.data(), answer.size(), MSG_NOSIGNAL);
    notifier->setProperty("rest", QByteArray::fromStdString(text));
}

std::string BoardProgram::obeyLines(std::string &text)
{
    std::string answers;
    for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
        const ControlAnswer answer = obeyControlCommand(*board_, text.substr(0, end));
        text.erase(0, end + 1);
        answers += answer.text;
        if (answer.quit)
            QCoreApplication::quit();
    }
    if (text.size() > longestControlLine)
        text.clear();
    return answers;
}

// Pictures. --------------------------------------------------------------------------------------

void BoardProgram::refresh()
{
    const BoardView view = board_->view();
    if (options_.terminal)
        drawTerminal(view);
    if (window_)
        window_->setPicture(view.picture);
    if (frames_ && !frames_->write(view.picture)) {
        std::fprintf(stderr, "qovelmorboard: cannot write frames to %s\n",
                     qPrintable(options_.framesFolder));
        frames_.reset();
    }
}

void BoardProgram::drawTerminal(const BoardView &view)
{
    print(terminal_.update(terminalLines(view, terminalColumns())));
}

} // namespace qovelmor::simboard
