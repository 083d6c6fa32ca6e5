// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/ApplyRequests.h"
#include "plugin/SetBuffer.h"

#include <vantora/abstractplugin.h>

#include <QObject>
#include <QString>

class ConfigTree;
class IConfigEntry;

/// The plugin object: answers the host's requests on the keys of the view.
///
/// What is set or created waits in the set buffer until a commit writes it; reading, deleting and
/// applying never look there. The files of a key may name keys of the view and so lead from one
/// request into another; one that leads into itself is not handled. Host thread only.
class ZelvoView : public QObject, public virtual AbstractPlugin
{
    Q_OBJECT
    Q_INTERFACES(AbstractPlugin)

public:
    ZelvoView();

    /// Waits for the apply requests under way, 30 seconds a script at most, and drops what is not
    /// committed. The host must not hold up the backend calls with which they end.
    ~ZelvoView() override { }

    /// Registers the view with the action kit. Scripts are looked for in `baseDir` + "/wrappers";
    /// one that is not absolute is taken from the working directory that the process has now.
    ///
    /// A host that wants to see what its requests lead to has left a listener before; see
    /// ActivityReports.
    void pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                        QString const& baseDir) override;

    /// @return 0: the key is there; 1: it is not.
    int contains(QString const& key) override;

    /// @return 0: `result` has the answer; 1: the key is not handled (asked for the directory above
    ///         the plugin's root, `result` gets that root all the same); 6: the entry is neither a
    ///         branch nor a key.
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override;

    /// @return 0: the value waits for its commit; 1: the key is not handled or takes no value.
    int set(QString const& key, QString const& value, _RegEntryParam const& param) override;

    /// Writes what was set or created at or under `key`, and what the backend holds pending behind
    /// the keys there; the entry `key` itself always takes part. A value that the backend refuses
    /// waits for the next commit.
    ///
    /// @return 0: done; 1: the key is not handled. An ancestor of the plugin's root answers 1 after
    ///         all is written, so that the host goes on with its other parts.
    int commit(QString const& key) override;

    /// Queues the apply scripts at and under `key` and returns. What was made for the request goes
    /// when that has ended, through the event loop of the thread that this object lives in; without
    /// one it goes with this object.
    ///
    /// @param command  the key that is set to "0" when all is done, and the name of the semaphore
    ///                 that is then released; may be empty.
    /// @return 0: under way; 1: the key is not handled.
    int apply(QString const& key, QString const& command) override;

    /// Creates a session. It waits for its commit; one whose creation failed does not.
    ///
    /// @return 0: created; 1: the key names no session, or its creation failed.
    int create(QString const& key, _RegEntryType const& type) override;

    /// @return 0: the delete actions have run, whatever they answered; 1: the key is not handled.
    int del(QString const& key) override;

    /// Nothing to do: the view holds no data of its own. 0.
    int importRegistry(QByteArray&) override { return 0; }
    int exportRegistry(QString const&, QByteArray&) override { return 0; }

    /// What was set or created and not committed, made on first use; it stays the plugin's.
    ConfigTree* setBuffer();
    void deleteSetBuffer() { mSetBuffer.clear(); }

private:
    Q_DISABLE_COPY(ZelvoView)

    class Request;

    /// The entry of `tree` that handles `key`, or null.
    IConfigEntry* handler(ConfigTree& tree, QString const& key) const;

    SetBuffer mSetBuffer;
    ApplyRequests mApplies;
};
