// SPDX-License-Identifier: MIT

// The input is a list of requests to the whole plugin, on a host in memory. A request is a letter
// for the operation, a key, and behind a 0xfe a value; the next begins behind a 0xff. Capital
// letters go through the host, which knows the keys of the registry as well.

#include "Fuzzing.h"
#include "ShippedRegistry.h"
#include "plugin/AutoThread.h"
#include "plugin/ZelvoView.h"
#include "tree/ConfigTree.h"
#include "tree/KeyPath.h"
#include "untrusted/PathWatch.h"

#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QStringList>
#include <QThreadPool>

#include <new>

namespace {

char const kEnd = '\xff';
char const kValue = '\xfe';
int const kMostRequests = 48;

char const kBaseDir[] = "/tmp/fuzzed/base";
char const kOwnConnection[] = "/etc/NetworkManager/system-connections/Zelvo";

/// The plugin on a host that can be exchanged. A plugin of its own for each input would leave an
/// action kit behind each time.
class View : public ZelvoView
{
public:
    void use(RegistryHost& host)
    {
        mBackend = &host;
        mRegistry = &host.defaultSettings();
    }

    /// Waits for the applies under way, as the destructor does, and drops all that is left.
    void finish()
    {
        qDeleteAll(findChildren<AutoThread*>());
        qDeleteAll(findChildren<QThreadPool*>());
        deleteSetBuffer();
    }
};

/// One host after another, all at the same place: the kit keeps the backend's address.
class Scene
{
public:
    Scene()
        : mHost(new (&mPlace) ShippedRegistry)
    {
        makeEnvironmentFiles();
        // Without a radio its settings are hidden, but for this mark.
        fuzzWriteFile(QLatin1String("/tmp/.wireless-disabled"), QByteArray());
        mView.pluginIsLoaded(*mHost, mHost->defaultSettings(), QString(), QLatin1String(kBaseDir));
        mHost->addPlugin(mView);
    }

    void reset()
    {
        mView.finish();
        mHost->~ShippedRegistry();
        mHost = new (&mPlace) ShippedRegistry;
        mView.use(*mHost);
        mHost->addPlugin(mView);
        QFile::remove(QLatin1String(kOwnConnection));
    }

    ShippedRegistry& host() { return *mHost; }
    View& view() { return mView; }

private:
    Q_DISABLE_COPY(Scene)

    // Targets that are there and that are not, and keys of the view that lead into each other.
    static void makeEnvironmentFiles()
    {
        writeTargets("rdp/sessions/{uuid}/address",
                     "REG_SET=root/ConnectionType/rdesktop/connections/{UUID}/address\n"
                     "REG_SET=root/ConnectionType/rdesktop/connections/{UUID}/label\n"
                     "X=root/no/such/key\n");
        writeTargets("usb/read_only", "REG_SET=root/no/such/key\nREG_SET=\n");
        writeTargets("usb/enable", "REG_SET=root/zelvo-view/usb/enable\n");
        writeTargets("auto_update/enable", "REG_SET=root/zelvo-view/remote_assistance/enable\n");
        writeTargets("remote_assistance/enable", "REG_SET=root/zelvo-view/auto_update/enable\n");
        writeTargets("browser/sessions/{uuid}/url",
                     "X=root/zelvo-view/browser/sessions/{UUID}/url\n"
                     "REG_SET=root/zelvo-view/browser/sessions/{UUID}/name\n");
    }

    static void writeTargets(char const* viewKey, QByteArray const& content)
    {
        QString const wrappers = QLatin1String(kBaseDir) + QLatin1String("/wrappers/zelvo-view/");
        fuzzWriteFile(wrappers + QLatin1String(viewKey) + QLatin1String("/set.env"), content);
    }

    alignas(ShippedRegistry) char mPlace[sizeof(ShippedRegistry)];
    ShippedRegistry* mHost;
    View mView;
};

Scene& scene()
{
    // For the process: the kit of the view and all that it refers to are never deleted.
    static Scene* const scene = new Scene;
    return *scene;
}

struct Request
{
    explicit Request(QByteArray const& bytes)
        : isForHost(bytes.left(1).toUpper() == bytes.left(1))
        , operation(bytes.left(1).toLower().constData()[0])
    {
        int const separator = bytes.indexOf(kValue);
        key = fuzzText(separator < 0 ? bytes.mid(1) : bytes.mid(1, separator - 1));
        value = fuzzText(separator < 0 ? QByteArray() : bytes.mid(separator + 1));
    }

    bool isForHost;
    char operation;
    QString key;
    QString value;
};

struct Answer
{
    int code;
    QMap<QString, _RegNodeType> nodes;

    bool operator==(Answer const& other) const
    {
        return code == other.code && nodes == other.nodes;
    }
};

template <typename Target> Answer read(Target& target, QString const& key, _RegEntryParam param)
{
    Answer answer;
    answer.code = target.get(key, answer.nodes, param, QString());
    return answer;
}

template <typename Target> int carryOut(Target& target, Request const& request)
{
    switch (request.operation) {
    case 's':
        return target.set(request.key, request.value, REG_PARAM_VALUE);
    case 'c':
        return target.create(request.key, REG_TYPE_STRING);
    case 'd':
        return target.del(request.key);
    case 'm':
        return target.commit(request.key);
    case 'a':
        return target.apply(request.key, request.value);
    case 'n':
        return target.contains(request.key);
    case 't':
        return read(target, request.key, REG_PARAM_TYPE).code;
    case 'x':
        return read(target, request.key, REG_PARAM_REGEXP).code;
    default:
        return read(target, request.key, REG_PARAM_VALUE).code;
    }
}

bool isDocumented(Request const& request, int code)
{
    bool const isRead = QByteArray("scdman").indexOf(request.operation) < 0;
    // The base class answers a parameter of a default setting with 2.
    bool const isParameter = request.operation == 't' || request.operation == 'x';
    return code == 0 || code == 1 || (isRead && code == 6) || (isParameter && code == 2);
}

/// Whether a 1 says no more than that the key belongs to others too.
bool isCommitOfAncestor(Request const& request)
{
    return request.operation == 'm' && KeyPath(request.key).isRootOf(scene().view().rootDir());
}

template <typename Target> void serve(Target& target, Request const& request)
{
    Answer const before = read(target, request.key, REG_PARAM_VALUE);
    int const code = carryOut(target, request);
    fuzzCheck(isDocumented(request, code), "an operation answers its own codes");
    if (code == 0 || isCommitOfAncestor(request))
        return;
    fuzzCheck(read(target, request.key, REG_PARAM_VALUE) == before,
              "a failed operation changes nothing that can be read");
}

void serve(Request const& request)
{
    if (request.isForHost)
        serve(scene().host(), request);
    else
        serve(scene().view(), request);
}

/// With everything committed, nothing is pending anywhere, and another commit writes nothing.
void checkEnd()
{
    View& view = scene().view();
    ShippedRegistry& host = scene().host();
    fuzzCheck(view.commit(view.rootDir()) == 0, "the root can be committed");
    fuzzCheck(view.setBuffer()->children().isEmpty(), "a commit of the root empties the buffer");
    fuzzCheck(host.commit(QLatin1String("root")) == 0, "everything can be committed");
    QMap<QString, _RegEntryChange> changes;
    fuzzCheck(host.changes(changes) == 0, "what is pending can be listed");
    QStringList const pending = changes.keys();
    fuzzCheck(pending.filter(QRegExp(QLatin1String("^root(/|$)"))).isEmpty(),
              "a commit of everything leaves nothing pending");

    QByteArray const written = host.exported();
    fuzzCheck(view.commit(view.rootDir()) == 0 && host.commit(QLatin1String("root")) == 0
                  && host.exported() == written,
              "a second commit writes nothing");
}

void checkPaths(QStringList const& paths)
{
    QByteArray property = "no file is looked at but the wrappers' and fixed ones; others:";
    bool holds = true;
    for (QString const& path : paths) {
        if (PathWatch::isExpected(path, QLatin1String(kBaseDir)))
            continue;
        property += ' ' + path.toUtf8();
        holds = false;
    }
    fuzzCheck(holds, property.constData());
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    scene().reset();
    QList<QByteArray> const requests = fuzzBytes(data, size).split(kEnd).mid(0, kMostRequests);
    PathWatch watch;
    for (QByteArray const& request : requests) {
        if (!request.isEmpty())
            serve(Request(request));
    }
    checkEnd();
    scene().view().finish();
    checkPaths(watch.paths());
    return 0;
}
