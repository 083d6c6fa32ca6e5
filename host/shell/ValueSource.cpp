#include "shell/ValueSource.h"

#include "registry/RegistryKey.h"
#include "shell/KeyNames.h"
#include "shell/Trace.h"
#include "shell/TracedHost.h"

namespace {

char const* const kGetScript = "/get.sh";
char const* const kDisplayKeys = "root/Display";

/// What the read itself has done, without what that has led to.
QList<TraceEvent> stepsOf(QList<TraceEvent> const& events)
{
    QList<TraceEvent> steps;
    for (TraceEvent const& event : events) {
        if (event.depth == events.last().depth + 1)
            steps.append(event);
    }
    return steps;
}

bool isGetScript(TraceEvent const& step)
{
    return step.kind == TraceEvent::ScriptRun && step.subject.endsWith(QLatin1String(kGetScript));
}

bool isValueOfRegistry(TraceEvent const& step)
{
    return step.kind == TraceEvent::BackendCall && step.code == 0 && step.hasValue;
}

/// The last step that can have brought the value says; the bus is asked for the visibility already.
QString sourceFrom(QList<TraceEvent> const& steps)
{
    QString source;
    bool isOnBus = false;
    for (TraceEvent const& step : steps) {
        if (isGetScript(step))
            // What was read before was the environment of the script.
            source = QLatin1String(step.isSuccess ? "script" : "");
        else if (isValueOfRegistry(step))
            source = QLatin1String(
                isAtOrUnder(step.subject, QLatin1String(kDisplayKeys)) ? "display" : "registry");
        else if (step.kind == TraceEvent::BusCall)
            isOnBus = true;
    }
    return source.isEmpty() && isOnBus ? QString::fromLatin1("wireless") : source;
}

} // namespace

int getWithSource(TracedHost& host, QString const& key, QMap<QString, _RegNodeType>& answer,
                  QString& source)
{
    QList<TraceEvent> events;
    host.trace().record(&events);
    int const code = host.get(key, answer, REG_PARAM_VALUE, QString::fromLatin1(""));
    host.trace().record(nullptr);
    if (code != 0 || !isOneValue(answer))
        return code;
    if (answer.constBegin().value() == REG_NODE_DEFAULT)
        source = QLatin1String("default");
    else if (host.pending().isPlugins(key))
        source = sourceFrom(stepsOf(events));
    else
        source = QLatin1String("registry");
    return code;
}
