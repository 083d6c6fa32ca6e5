// SPDX-License-Identifier: MIT

#include "wireless/WirelessSystem.h"

#include "actions/ActionKit.h"
#include "actions/IActivityObserver.h"
#include "common/QtCompat.h"
#include "wireless/NMConfFile.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFileInfo>
#include <QLatin1String>
#include <QList>
#include <QMetaType>
#include <QScopedPointer>
#include <QStringList>
#include <QThread>
#include <QVariant>
#include <QtDebug>

#include <chrono>

namespace {

QLatin1String const kService("org.freedesktop.NetworkManager");
QLatin1String const kManagerPath("/org/freedesktop/NetworkManager");
QLatin1String const kManagerInterface("org.freedesktop.NetworkManager");
QLatin1String const kActiveInterface("org.freedesktop.NetworkManager.Connection.Active");
QLatin1String const kPropertiesInterface("org.freedesktop.DBus.Properties");
QLatin1String const kWirelessInterface("org.freedesktop.NetworkManager.Device.Wireless");

QLatin1String const kBusService("org.freedesktop.DBus");
QLatin1String const kBusPath("/org/freedesktop/DBus");
QLatin1String const kBusInterface("org.freedesktop.DBus");

QLatin1String const kOwnConnectionName("zelvo-view");

QLatin1String const kOwnFileName("Zelvo");

QLatin1String const kIntrospect("org.freedesktop.DBus.Introspectable.Introspect");
QLatin1String const kGetProperty("org.freedesktop.DBus.Properties.Get");

typedef QList<QDBusObjectPath> ObjectPaths;

/// One call on the bus, for the observer.
class ObservedCall
{
public:
    ObservedCall()
        : mObserver(ActionKit::sObserver())
    {
        if (mObserver)
            mStart = Clock::now();
    }

    void end(QString const& path, QString const& member, QDBusError const& error) const
    {
        if (!mObserver)
            return;
        std::chrono::milliseconds const duration
            = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - mStart);
        mObserver->busCallHasEnded(path, member, error.isValid() ? error.message() : QString(),
                                   static_cast<int>(duration.count()));
    }

private:
    typedef std::chrono::steady_clock Clock;

    IActivityObserver* const mObserver;
    Clock::time_point mStart;
};

void registerTypes()
{
    qRegisterMetaType<QDBusObjectPath>("QDBusObjectPath");
    qRegisterMetaType<ObjectPaths>("QList<QDBusObjectPath>");
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
}

class BusConnector : public QThread
{
protected:
    void run() override { static_cast<void>(QDBusConnection::systemBus()); }
};

bool connectInAnotherThread()
{
    BusConnector connector;
    connector.start();
    return connector.wait();
}

/// Qt 5 holds back what arrives on a connection that was made in the main thread until that thread
/// has run its event loop, and with it the news that the bus has died: a call that waits for its
/// answer at that moment would wait for ever. That connection is made once, so another thread makes
/// it.
QDBusConnection defaultConnection()
{
    static bool const isMade = !QtCompat::kNewBusWaitsForEventLoop || connectInAnotherThread();
    static_cast<void>(isMade);
    return QDBusConnection::systemBus();
}

/// Whether a bus answers. From then on the connection may be used.
///
/// A bus tells each new connection its name. Qt 5 notes it in a thread of its own, in a list that
/// every call of a service reads with nothing that keeps the two apart. Only a call of the bus
/// itself does not read it; and since a bus answers in order, the name has been noted by then.
bool isAlive(QDBusConnection const& connection)
{
    if (!connection.isConnected())
        return false;
    QDBusMessage const question = QDBusMessage::createMethodCall(
        kBusService, kBusPath, kBusInterface, QLatin1String("GetId"));
    return connection.call(question).type() == QDBusMessage::ReplyMessage;
}

/// To be taken once a request. The toolkit makes its connection once; when that has died, one of
/// our own takes its place, which is made anew as often as it dies.
QDBusConnection systemBus()
{
    // Before the first connection is made: at the end of the process the toolkit then still knows
    // how to destroy what the connection holds of such types.
    registerTypes();
    QDBusConnection connection = defaultConnection();
    if (isAlive(connection))
        return connection;
    QString const name(kOwnConnectionName);
    connection = QDBusConnection(name);
    if (isAlive(connection))
        return connection;
    QDBusConnection::disconnectFromBus(name);
    connection = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
    // When it does not, whoever uses the connection will see.
    static_cast<void>(isAlive(connection));
    return connection;
}

/// @return belongs to the caller; not valid when the bus or NetworkManager is not there.
QDBusInterface* newProxy(QDBusConnection const& bus, QString const& path, QString const& interface)
{
    ObservedCall const call;
    QDBusInterface* const proxy = new QDBusInterface(kService, path, interface, bus);
    // It has asked what the object is like.
    call.end(path, kIntrospect, proxy->isValid() ? proxy->lastError() : bus.lastError());
    return proxy;
}

QDBusMessage callMethod(QDBusInterface& proxy, QLatin1String method,
                        QVariantList const& arguments = QVariantList())
{
    ObservedCall const call;
    QDBusMessage const answer
        = proxy.callWithArgumentList(QDBus::AutoDetect, QString(method), arguments);
    call.end(proxy.path(), proxy.interface() + QLatin1Char('.') + method, QDBusError(answer));
    return answer;
}

void warn(QString const& message)
{
    qWarning("\"%s\"", message.toUtf8().constData());
}

bool isValidOrWarned(QDBusInterface const& proxy)
{
    if (!proxy.isValid()) {
        warn(proxy.connection().lastError().message());
        return false;
    }
    // Making the proxy asks for the interface. Who has not answered that in time will not answer
    // the next call either.
    if (proxy.lastError().type() == QDBusError::NoReply) {
        warn(proxy.lastError().message());
        return false;
    }
    return true;
}

/// The property of that name; empty when it is missing or no list of object paths.
ObjectPaths objectPaths(QDBusInterface const& proxy, char const* property)
{
    ObservedCall const call;
    ObjectPaths const paths = qvariant_cast<ObjectPaths>(proxy.property(property));
    call.end(proxy.path(), kGetProperty, proxy.lastError());
    return paths;
}

ObjectPaths activeConnectionDevices(QDBusConnection const& bus,
                                    QDBusObjectPath const& activeConnection)
{
    QScopedPointer<QDBusInterface> const proxy(
        newProxy(bus, activeConnection.path(), kActiveInterface));
    return isValidOrWarned(*proxy) ? objectPaths(*proxy, "Devices") : ObjectPaths();
}

void deactivateConnection(QDBusConnection const& bus, QDBusObjectPath const& activeConnection)
{
    QScopedPointer<QDBusInterface> const manager(newProxy(bus, kManagerPath, kManagerInterface));
    // A connection that is gone by now, or was asked before, needs no deactivating.
    static_cast<void>(callMethod(*manager, QLatin1String("DeactivateConnection"),
                                 QVariantList() << QVariant::fromValue(activeConnection)));
}

/// A device is wireless when it has the wireless interface at all, whatever it is capable of.
bool isWirelessDevice(QDBusConnection const& bus, QDBusObjectPath const& device)
{
    QScopedPointer<QDBusInterface> const proxy(newProxy(bus, device.path(), kPropertiesInterface));
    QDBusReply<QVariant> const capabilities
        = callMethod(*proxy, QLatin1String("Get"),
                     QVariantList() << QString(kWirelessInterface)
                                    << QString(QLatin1String("WirelessCapabilities")));
    return capabilities.isValid();
}

} // namespace

NMConfFile* wireless_defaultNmConfig(QDir const& dir)
{
    QFileInfoList const files
        = dir.entryInfoList(QStringList(QLatin1String("*")), QDir::Files, QDir::Name);
    for (QFileInfo const& info : files) {
        QScopedPointer<NMConfFile> file(new NMConfFile(info.absoluteFilePath()));
        if (file->isWirelessConfig())
            return file.take();
    }
    return new NMConfFile(dir.absolutePath() + QLatin1Char('/') + kOwnFileName);
}

QString wireless_firstHalDevice()
{
    QDBusConnection const bus = systemBus();
    QScopedPointer<QDBusInterface> const manager(newProxy(bus, kManagerPath, kManagerInterface));
    if (!isValidOrWarned(*manager))
        return QString();
    // Not const: error() of Qt 4 is not.
    QDBusReply<ObjectPaths> devices = callMethod(*manager, QLatin1String("GetDevices"));
    if (!devices.isValid()) {
        warn(devices.error().message());
        return QString();
    }
    ObjectPaths const paths = devices.value();
    for (QDBusObjectPath const& device : paths) {
        if (isWirelessDevice(bus, device))
            return device.path();
    }
    return QString();
}

bool wireless_isEnabled()
{
    return !wireless_firstHalDevice().isEmpty();
}

void wireless_deactivateConnections()
{
    QDBusConnection const bus = systemBus();
    QScopedPointer<QDBusInterface> const manager(newProxy(bus, kManagerPath, kManagerInterface));
    if (!isValidOrWarned(*manager))
        return;
    ObjectPaths const connections = objectPaths(*manager, "ActiveConnections");
    for (QDBusObjectPath const& connection : connections) {
        ObjectPaths const devices = activeConnectionDevices(bus, connection);
        for (QDBusObjectPath const& device : devices) {
            if (isWirelessDevice(bus, device))
                deactivateConnection(bus, connection);
        }
    }
}
