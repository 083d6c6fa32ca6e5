#include "shell/KeyTree.h"

#include "shell/KeyNames.h"
#include "shell/Printer.h"
#include "shell/Reply.h"

#include <vantora/vantora.h>

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
    TreeReader(Vantora& host, Reply& reply)
        : mHost(host)
        , mReply(reply)
    {
    }

    int readListing(QString const& key, Listing& listing)
    {
        return mHost.get(key, listing, REG_PARAM_VALUE, QString::fromLatin1(""));
    }

    void addChildren(Listing const& listing, QString const& indent)
    {
        Listing::const_iterator node = listing.constBegin();
        while (node != listing.constEnd()) {
            QString const key = node.key();
            _RegNodeType const type = node.value();
            bool const isLast = ++node == listing.constEnd();
            addNode(key, type, indent + (isLast ? kLastBranch : kBranch),
                    indent + (isLast ? kNoLine : kLine));
        }
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
        ReplyNode node = {key, type, QString()};
        // One that cannot be read is shown without a value.
        static_cast<void>(mHost.get(key, node.value, REG_PARAM_VALUE, QString::fromLatin1("")));
        mReply.nodes.append(node);
        mReply.text += lead + ownName(key) + QLatin1String(" = ") + shownValue(node.value)
            + QLatin1Char('\n');
    }

    void addDirectory(QString const& key, QString const& lead, QString const& childIndent)
    {
        ReplyNode const node = {key, REG_NODE_DIR, QString()};
        mReply.nodes.append(node);
        mReply.text += lead + shownName(key, REG_NODE_DIR) + QLatin1Char('\n');
        Listing listing;
        if (readListing(key, listing) == 0)
            addChildren(listing, childIndent);
    }

    Vantora& mHost;
    Reply& mReply;
};

bool isValue(Listing const& listing)
{
    return listing.size() == 1
        && (listing.constBegin().value() == REG_NODE_VALUE
            || listing.constBegin().value() == REG_NODE_DEFAULT);
}

} // namespace

void readKeyTree(Vantora& host, QString const& key, Reply& reply)
{
    TreeReader reader(host, reply);
    Listing listing;
    reply.code = reader.readListing(key, listing);
    if (reply.code != 0)
        return;
    if (isValue(listing)) {
        ReplyNode const node = {key, REG_NODE_KEY, listing.constBegin().key()};
        reply.nodes.append(node);
        reply.text = key + QLatin1String(" = ") + shownValue(node.value) + QLatin1Char('\n');
        return;
    }
    reply.text = key + QLatin1String("/\n");
    reader.addChildren(listing, QString());
}
