#include "wireless/WirelessSystem.h"

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

QLatin1String const kOwnFileName("Zelvo");

QLatin1String const kIntrospect("org.freedesktop.DBus.Introspectable.Introspect");
QLatin1String const kGetProperty("org.freedesktop.DBus.Properties.Get");

typedef QList<QDBusObjectPath> ObjectPaths;

BusObserver* sObserver = nullptr;

/// One call on the bus, for the observer.
class ObservedCall
{
public:
    ObservedCall()
    {
        if (sObserver)
            mStart = Clock::now();
    }

    void end(QString const& path, QString const& member, QDBusError const& error) const
    {
        if (!sObserver)
            return;
        std::chrono::milliseconds const duration
            = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - mStart);
        sObserver->busCallHasEnded(path, member, error.isValid() ? error.message() : QString(),
                                   static_cast<int>(duration.count()));
    }

private:
    typedef std::chrono::steady_clock Clock;

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
/// answer at that moment would wait for ever. The connection is made once, so another thread makes
/// it.
QDBusConnection systemBus()
{
    static bool const isMade = !QtCompat::kNewBusWaitsForEventLoop || connectInAnotherThread();
    static_cast<void>(isMade);
    return QDBusConnection::systemBus();
}

/// @return belongs to the caller; not valid when the bus or NetworkManager is not there.
QDBusInterface* newProxy(QString const& path, QString const& interface)
{
    registerTypes();
    ObservedCall const call;
    QDBusInterface* const proxy = new QDBusInterface(kService, path, interface, systemBus());
    // It has asked what the object is like.
    call.end(path, kIntrospect, proxy->isValid() ? proxy->lastError() : systemBus().lastError());
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
        warn(systemBus().lastError().message());
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

ObjectPaths activeConnectionDevices(QDBusObjectPath const& activeConnection)
{
    QScopedPointer<QDBusInterface> const proxy(newProxy(activeConnection.path(), kActiveInterface));
    return isValidOrWarned(*proxy) ? objectPaths(*proxy, "Devices") : ObjectPaths();
}

void deactivateConnection(QDBusObjectPath const& activeConnection)
{
    QScopedPointer<QDBusInterface> const manager(newProxy(kManagerPath, kManagerInterface));
    // A connection that is gone by now, or was asked before, needs no deactivating.
    static_cast<void>(callMethod(*manager, QLatin1String("DeactivateConnection"),
                                 QVariantList() << QVariant::fromValue(activeConnection)));
}

/// A device is wireless when it has the wireless interface at all, whatever it is capable of.
bool isWirelessDevice(QDBusObjectPath const& device)
{
    QScopedPointer<QDBusInterface> const proxy(newProxy(device.path(), kPropertiesInterface));
    QDBusReply<QVariant> const capabilities
        = callMethod(*proxy, QLatin1String("Get"),
                     QVariantList() << QString(kWirelessInterface)
                                    << QString(QLatin1String("WirelessCapabilities")));
    return capabilities.isValid();
}

} // namespace

BusObserver::~BusObserver()
{
}

void wireless_setBusObserver(BusObserver* observer)
{
    sObserver = observer;
}

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
    QScopedPointer<QDBusInterface> const manager(newProxy(kManagerPath, kManagerInterface));
    if (!isValidOrWarned(*manager))
        return QString();
    QDBusReply<ObjectPaths> const devices = callMethod(*manager, QLatin1String("GetDevices"));
    if (!devices.isValid()) {
        warn(devices.error().message());
        return QString();
    }
    ObjectPaths const paths = devices.value();
    for (QDBusObjectPath const& device : paths) {
        if (isWirelessDevice(device))
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
    QScopedPointer<QDBusInterface> const manager(newProxy(kManagerPath, kManagerInterface));
    if (!isValidOrWarned(*manager))
        return;
    ObjectPaths const connections = objectPaths(*manager, "ActiveConnections");
    for (QDBusObjectPath const& connection : connections) {
        ObjectPaths const devices = activeConnectionDevices(connection);
        for (QDBusObjectPath const& device : devices) {
            if (isWirelessDevice(device))
                deactivateConnection(connection);
        }
    }
}
