#include "shell/KeyWatch.h"

#include "shell/KeyNames.h"
#include "shell/Printer.h"
#include "shell/Reply.h"

#include <vantora/vantora.h>

namespace {

typedef QMap<QString, _RegNodeType> Answer;

/// Adds what `answer` has and `other` has not.
void addMissing(Answer const& answer, Answer const& other, char const* sign, Reply& reply)
{
    Answer::const_iterator node = answer.constBegin();
    for (; node != answer.constEnd(); ++node) {
        if (!other.contains(node.key()))
            reply.text
                += QLatin1String(sign) + shownName(node.key(), node.value()) + QLatin1Char('\n');
    }
}

} // namespace

KeyWatch::KeyWatch(Vantora& host, QString const& key)
    : mHost(host)
    , mKey(key)
    , mCode(look(mLast))
{
}

int KeyWatch::code() const
{
    return mCode;
}

int KeyWatch::look(Answer& answer) const
{
    return mHost.get(mKey, answer, REG_PARAM_VALUE, QString::fromLatin1(""));
}

bool KeyWatch::hasChanged(Reply& reply)
{
    Answer now;
    // One that cannot be read any more has no answer.
    static_cast<void>(look(now));
    if (now == mLast)
        return false;
    Answer::const_iterator node = now.constBegin();
    for (; node != now.constEnd(); ++node) {
        ReplyNode const replyNode = {node.key(), node.value(), QString()};
        reply.nodes.append(replyNode);
    }
    if (isOneValue(now)) {
        reply.text = onOneLine(now.constBegin().key()) + QLatin1Char('\n');
    } else {
        bool const wasValue = isOneValue(mLast);
        addMissing(wasValue ? Answer() : mLast, now, "- ", reply);
        addMissing(now, mLast, "+ ", reply);
        if (reply.text.isEmpty())
            reply.text = QLatin1String("(none)\n");
    }
    mLast = now;
    return true;
}
