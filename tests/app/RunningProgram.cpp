// SPDX-License-Identifier: MIT
#include "RunningProgram.h"

#include "platform/TextEncoding.h"
#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>

#include <signal.h>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {
const auto feedsKey = u"RSSSiteAddresses"_s;
constexpr int noSuchPort = 99; // the program is kept from the ports of the machine
} // namespace

RunningProgram::RunningProgram() : environment_(QProcessEnvironment::systemEnvironment())
{
    for (const auto &name : {u"LogRSSRead"_s, u"LogRSSDisp"_s, u"LogTimer"_s, u"LogSystem"_s})
        set(name, true);
    set(u"ComPortNumber"_s, noSuchPort);
    set(u"ScrollSpeed"_s, 1);
    setVariable(u"HOME"_s, home_.path());
    setVariable(u"XDG_CONFIG_HOME"_s, home_.filePath(u"config"_s));
    setVariable(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    setVariable(u"TZ"_s, u"Asia/Tokyo"_s);
    setVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + home_.filePath(u"no-bus"_s));
    removeVariable(u"QOVELMORRSS_SERIAL_DEVICES"_s);
    for (const auto &name : {u"http_proxy"_s, u"all_proxy"_s, u"HTTP_PROXY"_s, u"ALL_PROXY"_s})
        removeVariable(name);
}

RunningProgram::~RunningProgram()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.kill();
    process_.waitForFinished();
}

void RunningProgram::set(const QString &key, PropertyValue value)
{
    values_.set(key, std::move(value));
}

void RunningProgram::addFeed(const QString &address, const QString &name, int format)
{
    feeds_.push_back(PropertyDictionary{{u"RSSValidate"_s, true},
                                        {u"RSSAddressString"_s, address},
                                        {u"RSSNameString"_s, name},
                                        {u"RSSFormat"_s, format}});
}

void RunningProgram::setBoard(const std::string &path)
{
    setVariable(u"QOVELMORRSS_SERIAL_DEVICES"_s, QString::fromStdString(path));
    set(u"ComPortNumber"_s, 0);
}

void RunningProgram::setVariable(const QString &name, const QString &value)
{
    environment_.insert(name, value);
}

void RunningProgram::removeVariable(const QString &name)
{
    environment_.remove(name);
}

void RunningProgram::writeInformation(const QString &text)
{
    QDir().mkpath(documents());
    QFile file(documents() + u"/Information.txt"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write(encodeShiftJisLossy(text));
}

bool RunningProgram::start(const QStringList &arguments)
{
    return writeProfile() && startAgain(arguments);
}

bool RunningProgram::startAgain(const QStringList &arguments)
{
    process_.setProcessEnvironment(environment_);
    process_.start(qEnvironmentVariable("QOVELMOR_BUILD_DIR") + u'/' + program_, arguments);
    return process_.waitForStarted();
}

void RunningProgram::kill()
{
    process_.kill();
    process_.waitForFinished();
}

void RunningProgram::sendSignal(int number)
{
    ::kill(static_cast<pid_t>(process_.processId()), number);
}

std::optional<int> RunningProgram::waitForEnd(Milliseconds limit)
{
    if (process_.state() != QProcess::NotRunning &&
        !process_.waitForFinished(static_cast<int>(limit.count())))
        return std::nullopt;
    if (process_.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return process_.exitCode();
}

std::optional<int> RunningProgram::terminate(Milliseconds limit)
{
    process_.terminate();
    return waitForEnd(limit);
}

QString RunningProgram::logBook() const
{
    QFile file(documents() + u"/Logbook.txt"_s);
    return file.open(QIODevice::ReadOnly) ? decodeShiftJis(file.readAll()) : QString();
}

bool RunningProgram::isStoreWhole() const
{
    const UserDefaults store(profilePath());
    const auto feeds = store.arrayForKey(feedsKey);
    return !store.openReport().wasBroken && feeds && feeds->size() == feeds_.size();
}

QString RunningProgram::profilePath() const
{
    return home_.filePath(u"config/QoVelmorRSS/QoVelmorRSS.plist"_s);
}

QString RunningProgram::documents() const
{
    return home_.filePath(u"Documents/QoVelmorRSS"_s);
}

bool RunningProgram::writeProfile() const
{
    UserDefaults store(profilePath());
    for (const PropertyEntry &entry : values_.entries())
        store.setValue(entry.value, entry.key);
    store.setArray(feeds_, feedsKey);
    return store.synchronize();
}

} // namespace qovelmor
