// SPDX-License-Identifier: MIT

#include "Load.h"

#include <vantora/abstractplugin.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QThreadPool>
#include <QTimer>

#include <cstdlib>

namespace {

int const kDone = 0;

int const kMostSessions = 20;
// An apply with scripts keeps a thread, and the scripts take turns with everything else.
int const kMostApplies = 4;
int const kLimitMs = 60000;
int const kLookMs = 10;

int const kValueCount = 4;

QString const kRoot = QLatin1String("root/zelvo-view");
QString const kWireless = QLatin1String("root/zelvo-view/wireless");

/// What may be set to the keys of that name.
struct Values
{
    char const* key;
    char const* values[kValueCount];
};

// The first value is the one to go back to.
Values const kValues[] = {
    {"auto_update/enable", {"true", "false", "1", "no"}},
    {"remote_assistance/enable", {"false", "true", "0", "yes"}},
    {"usb/enable", {"true", "false", "1", "0"}},
    {"usb/read_only", {"false", "true", "0", "1"}},
    {"display/resolution", {"1280x1024", "Auto", "800x600", "wide"}},
    {"display/refresh_rate", {"75", "Auto", "60", "72"}},
    {"display/color_depth", {"24 Bpp", "16 Bpp", "8 Bpp", "none"}},
    {"display/multi_monitor_mode", {"Disable", "Same as primary", "Extend below primary", "x"}},
    {"display/primary_monitor", {"1", "2", "0", "first"}},
};

Values const kWirelessValues[] = {
    {"wireless/ssid", {"Office", "Café", "", "=;="}},
    {"wireless/security", {"WPA Personal", "none", "WEP", "WPA2 Personal"}},
    {"wireless/passphrase", {"a passphrase", "another one", "", "0123456789"}},
};

char const* const kTypes[] = {"browser", "ica", "rdp", "vexlink", "vmware", "xenapp"};
int const kTypeCount = sizeof kTypes / sizeof *kTypes;

// With shell scripts behind them: good ones and bad ones.
struct Script
{
    char const* key;
    char const* name;
    char const* body;
};

Script const kScripts[] = {
    {"usb/enable", "get.sh", "printf %s \"$READ_ONLY\""},
    {"usb/enable", "get.env", nullptr},
    {"usb/enable", "set.sh", "cat \"$1\""},
    {"usb/enable", "commit.sh", "cat \"$1\" >/dev/null"},
    {"usb/enable", "apply.sh", "echo logout >\"$LAST_APPLY_COMMAND\""},
    {"usb/read_only", "isVisible.sh", "exit 0"},
    {"usb/read_only", "apply.sh", "echo restartX >\"$LAST_APPLY_COMMAND\"; exit 1"},
    {"auto_update/enable", "get.sh", "kill -9 $$"},
    {"auto_update/enable", "apply.sh", "kill -9 $$"},
    {"remote_assistance/enable", "get.sh", "exit 3"},
    {"remote_assistance/enable", "set.sh", "cat \"$1\"; echo >&2 to nobody"},
    {"remote_assistance/enable", "apply.sh", "rm \"$LAST_APPLY_COMMAND\""},
    {"display/resolution", "get.sh", ":"},
    {"display/resolution", "commit.sh", "rm \"$1\""},
    {"display/color_depth", "commit.sh", "exit 1"},
    {"rdp/sessions/{uuid}", "create.sh", "exit 1"},
    {"rdp/sessions/{uuid}", "apply.sh", ":"},
    {"rdp/sessions/{uuid}/name", "get.sh", "printf %s name"},
    {"rdp/sessions/{uuid}/name", "set.sh", "tr a-z A-Z <\"$1\""},
    {"wireless", "apply.sh", ":"},
    {"wireless/ssid", "set.sh", "cat \"$1\""},
};

QStringList wirelessKeys()
{
    return QStringList() << "enable"
                         << "ssid"
                         << "security"
                         << "passphrase";
}

[[noreturn]] void refused(QString const& request, int code)
{
    qFatal("%s: code %d", qPrintable(request), code);
    // The toolkit's does not come back either, but Qt 4 does not tell the compiler.
    std::abort();
}

} // namespace

/// How often a request is made, of all of them.
struct Load::Row
{
    int weight;
    void (Load::*request)();
};

// Asking the bus takes a hundred times as long as all else, and a listing of the root does.
Load::Row const Load::kRows[] = {
    {400, &Load::readValue},      {4, &Load::readWirelessValue},  {100, &Load::list},
    {1, &Load::listWithWireless}, {100, &Load::askFor},           {200, &Load::change},
    {3, &Load::changeWireless},   {80, &Load::commitKey},         {30, &Load::commitArea},
    {1, &Load::commitAll},        {25, &Load::createSession},     {20, &Load::deleteSession},
    {10, &Load::apply},           {20, &Load::requestUnknownKey},
};

Load::Load(Kind kind)
    : mPlugin(nullptr)
    , mSessionsMade(0)
{
    if (kind == SCRIPTS)
        installScripts();
    QString error;
    if (!mHost.loadDefaults(DEFAULTS_DIR, error)
        || !mHost.open(mDirectory.file("registry.db"), error))
        qFatal("%s", qPrintable(error));
    AbstractPlugin* const plugin = mLoader.load(PLUGIN_FILE, error);
    if (!plugin)
        qFatal("%s", qPrintable(error));
    plugin->pluginIsLoaded(mHost, mHost.defaultSettings(), QString(), mDirectory.path());
    mHost.addPlugin(*plugin);
    mPlugin = dynamic_cast<QObject*>(plugin);
}

void Load::request()
{
    int turn = random(sAllWeights());
    for (Row const& row : kRows) {
        turn -= row.weight;
        if (turn < 0) {
            (this->*row.request)();
            break;
        }
    }
    QCoreApplication::processEvents();
}

void Load::settle()
{
    waitForApplies(0);
    deleteSessions();
    resetValues();
    commit(kRoot);
    // Each of their actions holds on to the connection file that it read last.
    QStringList const names = wirelessKeys();
    for (QString const& name : names)
        get(kWireless + "/" + name);
}

int Load::sAllWeights()
{
    static int sum = 0;
    if (sum == 0) {
        for (Row const& row : kRows)
            sum += row.weight;
    }
    return sum;
}

void Load::installScripts() const
{
    for (Script const& script : kScripts) {
        QString const name
            = QString("wrappers/zelvo-view/%1/%2").arg(QString(script.key), QString(script.name));
        if (!script.body) {
            mDirectory.write(name, "READ_ONLY=root/USB/root/mass-storage/read-only\n");
            continue;
        }
        QFile file(mDirectory.write(name, QByteArray("#!/bin/sh\n") + script.body + "\n"));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    // Counts as one that succeeded.
    mDirectory.write("wrappers/zelvo-view/display/primary_monitor/commit.sh", "not executable\n");
}

void Load::readValue()
{
    get(anyKey());
}

void Load::readWirelessValue()
{
    get(kWireless + "/" + oneOf(wirelessKeys()));
}

void Load::list()
{
    get(anyDirectory());
}

void Load::listWithWireless()
{
    get(random(2) == 0 ? kRoot : kWireless);
}

void Load::askFor()
{
    QString const key = anyDirectory();
    int const code = mHost.contains(key);
    if (code != kDone)
        refused("contains " + key, code);
}

void Load::change()
{
    QString const key = anyKey();
    set(key, anyValue(key));
}

void Load::changeWireless()
{
    Values const& row = kWirelessValues[random(sizeof kWirelessValues / sizeof *kWirelessValues)];
    set(kRoot + "/" + row.key, QString::fromUtf8(row.values[random(kValueCount)]));
}

void Load::commitKey()
{
    commit(anyKey());
}

void Load::commitArea()
{
    QStringList areas = QStringList() << "usb"
                                      << "display"
                                      << "auto_update";
    for (char const* const type : kTypes)
        areas << type;
    commit(kRoot + "/" + oneOf(areas));
}

void Load::commitAll()
{
    commit(kRoot);
}

void Load::createSession()
{
    if (mSessions.size() == kMostSessions) {
        deleteSession();
        return;
    }
    QString const session = newSession();
    int const code = mHost.create(session, REG_TYPE_STRING);
    if (code != kDone)
        refused("create " + session, code);
    commit(session);
    mSessions.append(session);
}

void Load::deleteSession()
{
    if (mSessions.isEmpty())
        return;
    del(mSessions.takeAt(random(mSessions.size())));
}

void Load::apply()
{
    waitForApplies(kMostApplies - 1);
    QStringList const keys = QStringList() << "/usb"
                                           << "/display"
                                           << "/auto_update/enable"
                                           << "/rdp"
                                           << "/wireless"
                                           << "";
    QString const key = kRoot + oneOf(keys);
    int const code = mHost.apply(key, "tmp/apply/soak");
    if (code != kDone)
        refused("apply " + key, code);
}

void Load::requestUnknownKey()
{
    QStringList const keys = QStringList() << "/usb/colour"
                                           << "/usb/enable/more"
                                           << "//usb"
                                           << "/rdp/sessions/none"
                                           << "/rdp/sessions/none/name";
    QString const key = kRoot + oneOf(keys);
    QMap<QString, _RegNodeType> answer;
    int const codes[] = {
        mHost.get(key, answer, REG_PARAM_VALUE, QString()),
        mHost.contains(key),
        mHost.set(key, "value", REG_PARAM_VALUE),
        mHost.del(key),
        mHost.commit(key),
        mHost.apply(key, QString()),
    };
    for (int const code : codes) {
        if (code == kDone)
            refused("unknown " + key, code);
    }
}

void Load::set(QString const& key, QString const& value)
{
    int const code = mHost.set(key, value, REG_PARAM_VALUE);
    if (code != kDone)
        refused("set " + key, code);
}

void Load::commit(QString const& key)
{
    int const code = mHost.commit(key);
    if (code != kDone)
        refused("commit " + key, code);
}

void Load::del(QString const& session)
{
    int const code = mHost.del(session);
    if (code != kDone)
        refused("del " + session, code);
    commit(session);
}

void Load::get(QString const& key)
{
    QMap<QString, _RegNodeType> answer;
    int const code = mHost.get(key, answer, REG_PARAM_VALUE, QString());
    if (code != kDone)
        refused("get " + key, code);
}

void Load::deleteSessions()
{
    while (!mSessions.isEmpty())
        del(mSessions.takeLast());
}

void Load::resetValues()
{
    for (Values const& row : kValues)
        set(kRoot + "/" + row.key, row.values[0]);
    for (Values const& row : kWirelessValues)
        set(kRoot + "/" + row.key, row.values[0]);
}

void Load::waitForApplies(int mostLeft)
{
    QElapsedTimer timer;
    timer.start();
    // Without GLib the toolkit serves the last event that there is and then waits for another.
    QTimer look;
    look.start(kLookMs);
    // The plugin has a pool for each.
    while (mPlugin->findChildren<QThreadPool*>().size() > mostLeft) {
        if (timer.elapsed() > kLimitMs)
            qFatal("an apply does not end");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

int Load::random(int count)
{
    return static_cast<int>(mRandom() % static_cast<unsigned>(count));
}

QString Load::oneOf(QStringList const& texts)
{
    return texts.at(random(texts.size()));
}

QString Load::anyKey()
{
    if (!mSessions.isEmpty() && random(2) == 0)
        return oneOf(mSessions) + (random(2) == 0 ? "/name" : "/autostart");
    return kRoot + "/" + kValues[random(sizeof kValues / sizeof *kValues)].key;
}

QString Load::anyDirectory()
{
    if (!mSessions.isEmpty() && random(2) == 0)
        return oneOf(mSessions);
    QString const sessions = kRoot + "/" + kTypes[random(kTypeCount)];
    return oneOf(QStringList() << sessions << kRoot + "/usb" << kRoot + "/display");
}

QString Load::anyValue(QString const& key)
{
    for (Values const& row : kValues) {
        if (key.endsWith(row.key))
            return row.values[random(kValueCount)];
    }
    return key.endsWith("/name") ? QString("Session").repeated(random(8)) : QString("true");
}

QString Load::newSession()
{
    return QString("%1/%2/sessions/{c0ffee00-1234-4321-abcd-%3}")
        .arg(kRoot, QString(kTypes[random(kTypeCount)]))
        .arg(++mSessionsMade, 12, 16, QChar('0'));
}
