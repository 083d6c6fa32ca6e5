// SPDX-License-Identifier: MIT

#include "shell/Changes.h"
#include "shell/Interrupt.h"
#include "shell/KeyNames.h"
#include "shell/Terminal.h"
#include "shell/Trace.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QMap>

namespace {

/// Reads the whole subtree under a key, in the order of its listings. What a listing leaves out is
/// left out. For a terminal it says where each value comes from and what is pending.
class TreeReader
{
public:
    TreeReader(TracedHost& host, QString const& key, Reply& reply)
        : mHost(host)
        , mReply(reply)
        , mIsForTerminal(Terminal::sShowsOutput())
    {
        if (mIsForTerminal)
            mPending = pendingOutcomes(host, key);
    }

    void readTop()
    {
        Listing listing;
        QString source;
        mReply.code = read(mReply.key, listing, source);
        if (mReply.code != 0)
            return;
        if (isOneValue(listing))
            addNode(mReply.key, REG_NODE_KEY, 0, listing, source);
        else
            addChildren(listing, 1);
    }

private:
    /// Asks for a key, and learns where a value comes from: what the plugin of the key tells of it
    /// ("script", or the word of what stands behind the key), "registry" where there is no plugin,
    /// or "default" where nobody had a value. `source` stays empty where the plugin tells nothing,
    /// and without a value.
    ///
    /// @return the result code.
    int read(QString const& key, Listing& listing, QString& source)
    {
        QString told;
        mHost.trace().keepSource(&told);
        int const code = lookUp(mHost, key, listing);
        mHost.trace().keepSource(nullptr);
        if (code != 0 || !mIsForTerminal || !isOneValue(listing))
            return code;
        if (listing.constBegin().value() == REG_NODE_DEFAULT)
            source = QLatin1String("default");
        else
            source = mHost.pending().isPlugins(key) ? told : QString::fromLatin1("registry");
        return code;
    }

    void addChildren(Listing const& listing, int depth)
    {
        Listing::const_iterator node = listing.constBegin();
        for (; node != listing.constEnd() && !isInterrupted(); ++node) {
            // A part that cannot be read is shown without a value.
            Listing answer;
            QString source;
            bool const isRead = read(node.key(), answer, source) == 0;
            if (node.value() != REG_NODE_DIR) {
                addNode(node.key(), node.value(), depth, answer, source);
                continue;
            }
            addNode(node.key(), node.value(), depth, Listing(), QString());
            if (isRead)
                addChildren(answer, depth + 1);
        }
    }

    void addNode(QString const& key, int type, int depth, Listing const& answer,
                 QString const& source)
    {
        mReply.addNode(key, type, isOneValue(answer) ? answer.constBegin().key() : QString());
        ReplyNode& node = mReply.nodes.last();
        node.depth = depth;
        node.source = source;
        if (mPending.contains(key))
            node.pending = mPending.value(key).text();
    }

    TracedHost& mHost;
    Reply& mReply;
    bool const mIsForTerminal;
    QMap<QString, PendingOutcome> mPending;
};

} // namespace

Reply Commands::tree(ShellState& shell, QStringList const& arguments)
{
    Reply reply(0, Reply::Tree);
    reply.key = fullKey(arguments.value(0, QLatin1String("root")));
    TreeReader(shell.host, reply.key, reply).readTop();
    return reply;
}
