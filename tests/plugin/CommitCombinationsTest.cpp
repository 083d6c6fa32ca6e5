// SPDX-License-Identifier: MIT

// Any two of setting, creating, deleting and a commit that fails, on two keys of two sessions, and
// then a commit at any height: what is stored, what is pending, what the backend is asked for and
// what the scripts are told is what a small model says.

#include "plugin/ZelvoView.h"
#include "registry/RegistryHost.h"
#include "support/TestDirectory.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigKey.h"
#include "tree/ConfigTree.h"

#include <QFile>
#include <QScopedPointer>
#include <QtTest>

#include <algorithm>

namespace {

enum { kSessions = 2, kKeys = 2 };

// The first session is there from the start, with values; the second one is not.
char const* const kUuids[kSessions]
    = {"{c0ffee00-1234-4321-abcd-000000000001}", "{c0ffee00-1234-4321-abcd-000000000002}"};
char const* const kViewNames[kKeys] = {"name", "autostart"};
char const* const kRegistryNames[kKeys] = {"label", "autostart"};
// As they are set, and as the registry takes them.
char const* const kTexts[kSessions][kKeys] = {{"new one", "true"}, {"new two", "true"}};
char const* const kTaken[kSessions][kKeys] = {{"new one", "1"}, {"new two", "1"}};
char const kFolder[] = "zelvo-view/vexlink/sessions/{uuid}";

QString viewSession(int session)
{
    return QString("root/zelvo-view/vexlink/sessions/") + kUuids[session];
}

QString viewKey(int session, int key)
{
    return viewSession(session) + "/" + kViewNames[key];
}

QString registrySession(int session)
{
    return QString("root/ConnectionType/vexlink/connections/") + kUuids[session];
}

QString registryKey(int session, int key)
{
    return registrySession(session) + "/" + kRegistryNames[key];
}

/// A host that writes down which registry keys it is asked to commit, and can refuse all of them.
class RefusingHost : public RegistryHost
{
public:
    RefusingHost()
        : refuses(false)
    {
    }

    int commit(QString const& key) override
    {
        if (key.startsWith("root/ConnectionType/")) {
            asked.append(key);
            if (refuses)
                return 1;
        }
        return RegistryHost::commit(key);
    }

    bool refuses;
    QStringList asked;
};

/// What there is, and what has been told to whom.
struct State
{
    QStringList stored;
    QStringList pending;
    QStringList buffered;
    QStringList asked;
    QStringList scripts;
};

/// What shall happen, in the words of a person.
class Model
{
public:
    Model()
        : refuses(false)
        , mArrivals(0)
    {
        mSessions[0].isStored = true;
        mSessions[0].keys[0].stored = "old";
        mSessions[0].keys[1].stored = "1";
    }

    void set(int session, int key)
    {
        Key& changed = mSessions[session].keys[key];
        bool const isTaken = mSessions[session].willExist();
        changed.buffered = isTaken ? kTaken[session][key] : kTexts[session][key];
        arrive(mSessions[session]);
        if (isTaken)
            changed.pending = changed.buffered;
    }

    void create(int session)
    {
        Session& created = mSessions[session];
        if (created.willExist())
            return;
        created.pending = created.pending == Deleted ? Replaced : Created;
        created.isCreated = true;
        arrive(created);
    }

    void delSession(int session)
    {
        Session& gone = mSessions[session];
        if (gone.willExist()) {
            gone.pending = gone.pending == Created ? None : Deleted;
            for (Key& key : gone.keys)
                key.pending = QString();
        }
        if (gone.isCreated)
            gone.forgetBuffer();
    }

    void delKey(int session, int key)
    {
        Session const& owner = mSessions[session];
        Key& changed = mSessions[session].keys[key];
        bool const hasOwn = owner.pending == None && !changed.stored.isNull();
        if (owner.willExist())
            changed.pending = hasOwn ? QString("") : QString();
    }

    void commitKey(int session, int key)
    {
        askKey(session, key);
        settle(mSessions[session], key);
    }

    /// A session, or all of them together with the keys above them.
    void commitSessions(int first, int last)
    {
        for (int i = first; i <= last; ++i) {
            if (mSessions[i].pending == Deleted)
                mSessions[i].forgetKeys();
        }
        bool const isBranch = first != last;
        for (int i = first; i <= last; ++i)
            askForUnset(i, isBranch);
        for (int i : byArrival(first, last))
            askSession(i);
        if (!isBranch && !mSessions[first].isBuffered())
            askSession(first);
        for (int i = first; i <= last; ++i) {
            mSessions[i].isCreated = false;
            for (int key = 0; key < kKeys; ++key)
                settle(mSessions[i], key);
        }
    }

    /// The registry's own commit of all that is left.
    void commitRegistry()
    {
        for (int i = 0; i < kSessions; ++i)
            write(i);
    }

    State state() const
    {
        State all = mTold;
        for (int i = 0; i < kSessions; ++i)
            describe(i, all);
        return all;
    }

    bool refuses;

private:
    enum Change { None, Created, Replaced, Deleted };

    struct Key
    {
        QString stored;   // null: the default
        QString pending;  // null: nothing; empty: a deletion
        QString buffered; // null: not set
    };

    struct Session
    {
        Session()
            : isStored(false)
            , pending(None)
            , isCreated(false)
            , arrival(0)
        {
        }

        bool willExist() const { return pending == None ? isStored : pending != Deleted; }
        bool isBelowCreation() const { return pending == Created || pending == Replaced; }

        bool isBuffered() const
        {
            return isCreated || !keys[0].buffered.isNull() || !keys[1].buffered.isNull() || isLeft;
        }

        void forgetKeys()
        {
            isLeft = isBuffered();
            for (Key& key : keys)
                key.buffered = QString();
        }

        void forgetBuffer()
        {
            forgetKeys();
            isCreated = isLeft = false;
        }

        bool isStored;
        Change pending;
        bool isCreated;      // and waits in the set buffer for its commit
        bool isLeft = false; // there for a moment, though its keys are gone
        int arrival;
        Key keys[kKeys];
    };

    void arrive(Session& session)
    {
        if (session.arrival == 0)
            session.arrival = ++mArrivals;
    }

    QList<int> byArrival(int first, int last) const
    {
        QList<int> order;
        for (int i = first; i <= last; ++i) {
            if (mSessions[i].isBuffered())
                order.append(i);
        }
        if (order.size() == kSessions && mSessions[0].arrival > mSessions[1].arrival)
            std::reverse(order.begin(), order.end());
        return order;
    }

    /// Keys that nobody has set, and the session when it is not what the commit is for.
    void askForUnset(int session, bool withSession)
    {
        Session const& asked = mSessions[session];
        bool const isUnsetSession = withSession && !asked.isBuffered() && asked.pending != None;
        for (int key = 0; key < kKeys; ++key) {
            if (!asked.keys[key].pending.isNull() && asked.keys[key].buffered.isNull())
                askKey(session, key);
        }
        if (isUnsetSession)
            askAction(session);
    }

    void askKey(int session, int key)
    {
        Session& owner = mSessions[session];
        mTold.scripts << QString(kViewNames[key]) + "=" + owner.keys[key].buffered;
        mTold.asked << registryKey(session, key);
        if (!refuses && owner.willExist() && !owner.isBelowCreation())
            writeKey(owner.keys[key]);
    }

    void askSession(int session)
    {
        for (int key = 0; key < kKeys; ++key) {
            if (!mSessions[session].keys[key].buffered.isNull())
                askKey(session, key);
        }
        askAction(session);
    }

    void askAction(int session)
    {
        Session const& asked = mSessions[session];
        QString const action = asked.pending == Created ? "CREATE"
            : asked.pending == Deleted                  ? "DELETE"
                                                        : "EDIT";
        mTold.scripts << action + " " + asked.keys[0].buffered;
        mTold.asked << registrySession(session);
        if (!refuses)
            write(session);
    }

    void write(int session)
    {
        Session& written = mSessions[session];
        if (written.pending == Replaced || written.pending == Deleted) {
            for (Key& key : written.keys)
                key.stored = QString();
        }
        written.isStored = written.willExist();
        written.pending = None;
        for (Key& key : written.keys)
            writeKey(key);
    }

    void writeKey(Key& key)
    {
        if (!key.pending.isNull())
            key.stored = key.pending.isEmpty() ? QString() : key.pending;
        key.pending = QString();
    }

    void settle(Session& session, int key)
    {
        if (session.keys[key].pending.isNull())
            session.keys[key].buffered = QString();
        session.isLeft = false;
        if (!session.isBuffered())
            session.arrival = 0;
    }

    void describe(int i, State& all) const
    {
        char const* const changes[] = {"", "created", "modified", "deleted"};
        Session const& session = mSessions[i];
        if (session.isStored)
            all.stored << registrySession(i);
        if (session.pending != None)
            all.pending << registrySession(i) + " " + changes[session.pending];
        for (int key = 0; key < kKeys; ++key) {
            Key const& each = session.keys[key];
            if (session.isStored && !each.stored.isNull())
                all.stored << registryKey(i, key) + "=" + each.stored;
            if (!each.pending.isNull())
                all.pending << registryKey(i, key) + " "
                        + (each.pending.isEmpty() ? "deleted" : "modified");
            if (!each.buffered.isNull())
                all.buffered << viewKey(i, key) + "=" + each.buffered;
        }
        if (session.isBuffered())
            all.buffered << viewSession(i);
    }

    Session mSessions[kSessions];
    State mTold;
    int mArrivals;
};

} // namespace

class CommitCombinationsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void storesAndTellsWhatTheModelSays_data();
    void storesAndTellsWhatTheModelSays();

private:
    /// One of the operations that are combined, on the host and in the model.
    void run(QString const& operation);
    void commit(QString const& height);
    State state() const;

    TestDirectory mDefaults;
    TestWrappers mWrappers;
    QScopedPointer<RefusingHost> mHost;
    QScopedPointer<ZelvoView> mView;
    QScopedPointer<Model> mModel;
};

namespace {

/// "OPERATION SESSION KEY", or without the key.
QStringList operations()
{
    QStringList all;
    char const* const onKeys[] = {"set", "del", "fail"};
    char const* const onSessions[] = {"create", "del", "fail"};
    for (int session = 0; session < kSessions; ++session) {
        QString const place = " " + QString::number(session);
        for (char const* name : onSessions)
            all << name + place;
        for (int key = 0; key < kKeys; ++key) {
            for (char const* name : onKeys)
                all << name + place + " " + QString::number(key);
        }
    }
    return all;
}

QStringList heights()
{
    return QStringList() << viewKey(0, 0) << viewSession(0) << viewSession(1)
                         << "root/zelvo-view/vexlink/sessions"
                         << "root/zelvo-view/vexlink"
                         << "root/zelvo-view"
                         << "root";
}

} // namespace

void CommitCombinationsTest::initTestCase()
{
    // Few keys: they are read anew for each combination.
    char const declarations[]
        = "<registry><dir name='root'>"
          "<dir name='ConnectionType'><dir name='vexlink'><dir name='connections'>"
          "<dir name='{UUID}'><key name='label' type='string' default=''/>"
          "<key name='autostart' type='bool' default='0'/>"
          "<key name='ttsName' type='string' default=''/></dir></dir></dir></dir>"
          "<dir name='zelvo-view'><dir name='vexlink'><dir name='sessions'>"
          "<dir name='{uuid}'><key name='name' type='string' default=''/>"
          "<key name='autostart' type='bool' default='false'/></dir></dir></dir></dir>"
          "</dir></registry>";
    mDefaults.write("keys.xml", declarations);

    mWrappers.addScript(kFolder, "commit.sh",
                        "echo \"$VEXLINK_ACTION $VEXLINK_NAME\" >>log; exit 1");
    for (char const* const name : kViewNames)
        mWrappers.addScript(QString(kFolder) + "/" + name, "commit.sh",
                            QByteArray("read -r value <\"$1\"; echo \"") + name
                                + "=$value\" >>../log; exit 1");
}

void CommitCombinationsTest::init()
{
    QFile::remove(mWrappers.folder(kFolder) + "/log");
    mHost.reset(new RefusingHost);
    QString error;
    QVERIFY2(mHost->loadDefaults(mDefaults.path(), error), qPrintable(error));
    QVERIFY2(mHost->open(":memory:", error), qPrintable(error));
    QCOMPARE(mHost->create(registrySession(0), REG_TYPE_STRING), 0);
    QCOMPARE(mHost->set(registryKey(0, 0), "old", REG_PARAM_VALUE), 0);
    QCOMPARE(mHost->set(registryKey(0, 1), "1", REG_PARAM_VALUE), 0);
    QCOMPARE(mHost->commit("root"), 0);

    mView.reset(new ZelvoView);
    mHost->addPlugin(*mView);
    QString const wrappers = mWrappers.directory().path();
    mView->pluginIsLoaded(*mHost, mHost->defaultSettings(), QString(),
                          wrappers.left(wrappers.lastIndexOf('/')));
    keepInstanceKnown();
    mModel.reset(new Model);
}

void CommitCombinationsTest::cleanup()
{
    mModel.reset();
    mView.reset();
    mHost.reset();
}

void CommitCombinationsTest::run(QString const& operation)
{
    QStringList const words = operation.split(' ');
    QString const name = words.at(0);
    int const session = words.at(1).toInt();
    int const key = words.size() > 2 ? words.at(2).toInt() : -1;
    QString const place = key < 0 ? viewSession(session) : viewKey(session, key);
    if (name == "set") {
        QCOMPARE(mHost->set(place, kTexts[session][key], REG_PARAM_VALUE), 0);
        mModel->set(session, key);
    } else if (name == "create") {
        static_cast<void>(mHost->create(place, REG_TYPE_STRING));
        mModel->create(session);
    } else if (name == "del") {
        QCOMPARE(mHost->del(place), 0);
        if (key < 0)
            mModel->delSession(session);
        else
            mModel->delKey(session, key);
    } else {
        mHost->refuses = mModel->refuses = true;
        commit(place);
        mHost->refuses = mModel->refuses = false;
    }
}

void CommitCombinationsTest::commit(QString const& height)
{
    QCOMPARE(mHost->commit(height), 0);
    for (int session = 0; session < kSessions; ++session) {
        for (int key = 0; key < kKeys; ++key) {
            if (height == viewKey(session, key)) {
                mModel->commitKey(session, key);
                return;
            }
        }
        if (height == viewSession(session)) {
            mModel->commitSessions(session, session);
            return;
        }
    }
    mModel->commitSessions(0, kSessions - 1);
    if (height == "root")
        mModel->commitRegistry();
}

State CommitCombinationsTest::state() const
{
    State all;
    all.asked = mHost->asked;
    QMap<QString, _RegEntryChange> changes;
    mHost->changes(changes);
    char const* const words[] = {"modified", "created", "deleted", "nothing"};
    for (QString const& key : changes.keys())
        all.pending << key + " " + words[changes.value(key)];
    ConfigTree* const buffer = mView->setBuffer();
    for (int session = 0; session < kSessions; ++session) {
        if (mHost->contains(registrySession(session)) == 0)
            all.stored << registrySession(session);
        for (int key = 0; key < kKeys; ++key) {
            QMap<QString, _RegNodeType> value;
            mHost->get(registryKey(session, key), value, REG_PARAM_VALUE, QString());
            if (!value.isEmpty() && value.constBegin().value() == REG_NODE_VALUE)
                all.stored << registryKey(session, key) + "=" + value.constBegin().key();
            ConfigKey const* const held
                = dynamic_cast<ConfigKey*>(buffer->entry(viewKey(session, key)));
            if (held)
                all.buffered << viewKey(session, key) + "=" + held->bufferValue();
        }
        if (buffer->entry(viewSession(session)))
            all.buffered << viewSession(session);
    }
    QByteArray const log = mWrappers.read(kFolder, "log");
    all.scripts = QString::fromUtf8(log.constData(), log.size()).split("\n");
    all.scripts.removeLast();
    return all;
}

void CommitCombinationsTest::storesAndTellsWhatTheModelSays_data()
{
    QTest::addColumn<QString>("height");
    QTest::addColumn<QString>("first");

    for (QString const& height : heights()) {
        for (QString const& first : operations())
            QTest::newRow(qPrintable(first + ", …, commit " + height)) << height << first;
    }
}

void CommitCombinationsTest::storesAndTellsWhatTheModelSays()
{
    QFETCH(QString, height);
    QFETCH(QString, first);

    for (QString const& second : operations()) {
        cleanup();
        init();
        run(first);
        run(second);
        commit(height);
        State const actual = state();
        State expected = mModel->state();
        expected.pending.sort();
        QString const context = first + ", " + second + ", commit " + height;
        char const* const names[] = {"stored", "pending", "buffered", "asked", "scripts"};
        QStringList const actuals[]
            = {actual.stored, actual.pending, actual.buffered, actual.asked, actual.scripts};
        QStringList const expecteds[] = {expected.stored, expected.pending, expected.buffered,
                                         expected.asked, expected.scripts};
        for (int i = 0; i < 5; ++i)
            QVERIFY2(actuals[i] == expecteds[i],
                     qPrintable(context + ": " + names[i] + "\n  is     " + actuals[i].join("; ")
                                + "\n  not    " + expecteds[i].join("; ")));
    }
}

ZELVO_TEST(CommitCombinationsTest)
#include "CommitCombinationsTest.moc"
