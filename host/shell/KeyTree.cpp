#include "shell/KeyTree.h"

#include "shell/Changes.h"
#include "shell/Interrupt.h"
#include "shell/KeyNames.h"
#include "shell/Printer.h"
#include "shell/Reply.h"
#include "shell/Terminal.h"
#include "shell/TracedHost.h"
#include "shell/ValueSource.h"

#include <QMap>

namespace {

typedef QMap<QString, _RegNodeType> Listing;

QString const kBranch = QString::fromUtf8("├── ");
QString const kLastBranch = QString::fromUtf8("└── ");
QString const kLine = QString::fromUtf8("│   ");
QString const kNoLine = QString::fromUtf8("    ");

/// A value on its line of the drawing.
QString shownValue(QString value)
{
    return onOneLine(value.replace(QLatin1Char('\\'), QLatin1String("\\\\")));
}

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

    /// Reads what there is at `key`, and for a terminal where a value comes from.
    int read(QString const& key, Listing& listing, QString& source)
    {
        if (mIsForTerminal)
            return getWithSource(mHost, key, listing, source);
        return mHost.get(key, listing, REG_PARAM_VALUE, QString::fromLatin1(""));
    }

    void addChildren(Listing const& listing, QString const& indent)
    {
        Listing::const_iterator node = listing.constBegin();
        while (node != listing.constEnd() && !isInterrupted()) {
            QString const key = node.key();
            _RegNodeType const type = node.value();
            bool const isLast = ++node == listing.constEnd();
            addNode(key, type, indent + (isLast ? kLastBranch : kBranch),
                    indent + (isLast ? kNoLine : kLine));
        }
    }

    void addValue(ReplyNode const& node, QString const& name, QString const& source)
    {
        mReply.nodes.append(node);
        mReply.text += name + QLatin1String(" = ") + shownValue(node.value)
            + marks(node.key, source) + QLatin1Char('\n');
    }

private:
    void addNode(QString const& key, _RegNodeType type, QString const& lead,
                 QString const& childIndent)
    {
        if (type == REG_NODE_DIR)
            addDirectory(key, lead, childIndent);
        else
            addKey(key, type, lead);
    }

    void addKey(QString const& key, _RegNodeType type, QString const& lead)
    {
        Listing answer;
        QString source;
        ReplyNode node = {key, type, QString()};
        // One that cannot be read is shown without a value.
        if (read(key, answer, source) == 0 && isOneValue(answer))
            node.value = answer.constBegin().key();
        addValue(node, lead + ownName(key), source);
    }

    /// What a person is told of a key beside its value.
    QString marks(QString const& key, QString const& source) const
    {
        QString text;
        if (!source.isEmpty())
            text = Terminal::sStyled(QString::fromLatin1("  (%1)").arg(source), Terminal::Note);
        if (mPending.contains(key))
            text += Terminal::sStyled(
                QString::fromLatin1("  (pending: %1)").arg(mPending.value(key).text()),
                Terminal::Pending);
        return text;
    }

    void addDirectory(QString const& key, QString const& lead, QString const& childIndent)
    {
        ReplyNode const node = {key, REG_NODE_DIR, QString()};
        mReply.nodes.append(node);
        QString const name = shownName(key, REG_NODE_DIR);
        mReply.text += lead + (mIsForTerminal ? Terminal::sStyled(name, Terminal::Directory) : name)
            + marks(key, QString()) + QLatin1Char('\n');
        Listing listing;
        QString source;
        if (read(key, listing, source) == 0)
            addChildren(listing, childIndent);
    }

    TracedHost& mHost;
    Reply& mReply;
    bool const mIsForTerminal;
    QMap<QString, PendingOutcome> mPending;
};

} // namespace

void readKeyTree(TracedHost& host, QString const& key, Reply& reply)
{
    TreeReader reader(host, key, reply);
    Listing listing;
    QString source;
    reply.code = reader.read(key, listing, source);
    if (reply.code != 0)
        return;
    if (isOneValue(listing)) {
        ReplyNode const node = {key, REG_NODE_KEY, listing.constBegin().key()};
        reader.addValue(node, key, source);
        return;
    }
    reply.text = key + QLatin1String("/\n");
    reader.addChildren(listing, QString());
}
