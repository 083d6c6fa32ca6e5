// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/PluginScene.h"
#include "support/LastCommandWatch.h"

#include <QFile>
#include <QSystemSemaphore>

/// A started plugin and, for each kind of script, the request that runs it: on the key
/// "usb/enable", or on an RDP session where sessions alone have such a script.
class ScriptRequests
{
public:
    enum Kind { IsVisible, Get, Set, Create, Del, Commit, Apply, kKinds };

    ScriptRequests()
        : scene("root/zelvo-view")
    {
        scene.addSessions("rdesktop", QStringList() << kSession());
        scene.backend.addValue(kAllowed(), "1");
        scene.backend.addType(kAllowed(), "bool");
    }

    static char const* script(int kind)
    {
        char const* const scripts[kKinds]
            = {"isVisible.sh", "get.sh", "set.sh", "create.sh", "del.sh", "commit.sh", "apply.sh"};
        return scripts[kind];
    }

    /// The folder of the script, as a view key.
    static QString folder(int kind)
    {
        return kind == Create ? "zelvo-view/rdp/sessions/{uuid}" : "zelvo-view/usb/enable";
    }

    QString addScript(int kind, QByteArray const& body) const
    {
        return scene.wrappers.addScript(folder(kind), script(kind), body);
    }

    /// Carries the request out and waits for its end.
    ///
    /// @return all that can be seen of it: its result code, what it answers, what of it reaches the
    ///         backend, and the last command that an apply request hands over.
    QStringList run(int kind)
    {
        scene.backend.forgetCalls();
        QStringList outcome;
        int const code = request(kind, outcome);
        outcome.prepend(QString::number(code));
        outcome += writes();
        return outcome;
    }

    /// What a request comes to whose script succeeds without output, or fails; an apply script asks
    /// for a last command in both cases.
    QStringList runSucceeding(int kind) { return runWith(kind, "exit 0"); }
    QStringList runFailing(int kind) { return runWith(kind, "exit 1"); }

    /// The same of one that has no script.
    QStringList runWithout(int kind)
    {
        QFile::remove(scene.wrappers.folder(folder(kind)) + "/" + script(kind));
        return run(kind);
    }

    /// What an apply script does to ask for a last command; nothing for the others.
    static QByteArray asking(int kind)
    {
        return kind == Apply ? asksFor("logout") + "\n" : QByteArray();
    }

    PluginScene scene;

private:
    Q_DISABLE_COPY(ScriptRequests)

    static char const* kSession() { return "{11111111-1111-1111-1111-111111111111}"; }
    static char const* kAllowed() { return "root/USB/root/mass-storage/allowed"; }

    QStringList runWith(int kind, QByteArray const& body)
    {
        addScript(kind, asking(kind) + body);
        return run(kind);
    }

    int request(int kind, QStringList& answer)
    {
        QString const key = scene.at("usb/enable");
        switch (kind) {
        case IsVisible:
        case Get:
            return scene.get(key, &answer);
        case Set:
            return scene.set(key, "false");
        case Create:
            return scene.create(scene.at("rdp/sessions/{22222222-2222-2222-2222-222222222222}"));
        case Del:
            return scene.del(key);
        case Commit:
            return scene.set(key, "false") + scene.commit(key);
        default:
            return apply(key, answer);
        }
    }

    int apply(QString const& key, QStringList& answer)
    {
        // Who makes this file carries the command out.
        QFile handOver("/tmp/last-apply-command");
        static_cast<void>(handOver.open(QIODevice::ReadWrite));
        QString const command = "tmp/apply/faults";
        QSystemSemaphore semaphore(command, 0, QSystemSemaphore::Create);
        int const code = scene.plugin->apply(key, command);
        if (code == 0)
            semaphore.acquire();
        answer << QString::fromLatin1(handOver.readAll());
        handOver.remove();
        return code;
    }

    /// The calls with which the plugin changes the registry.
    QStringList writes() const
    {
        QStringList found;
        QStringList const calls = scene.backend.calls();
        for (QString const& call : calls) {
            if (!call.startsWith("get ") && !call.startsWith("contains "))
                found << call;
        }
        return found;
    }
};
