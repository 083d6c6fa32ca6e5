// SPDX-License-Identifier: MIT

#include "shell/Json.h"

#include "shell/Trace.h"

namespace {

char const* const kKinds[] = {"command", "backend", "script", "last command", "bus"};

void addScript(TraceEvent const& event, Json& object)
{
    object["script"] = utf8(event.subject);
    object["ending"] = utf8(event.ending);
    object["exit_code"] = event.code;
    object["success"] = event.isSuccess;
    object["output_bytes"] = event.outputBytes;
    if (!event.errorOutput.isEmpty())
        object["error_output"]
            = std::string(event.errorOutput.constData(), size_t(event.errorOutput.size()));
}

void addLastCommand(TraceEvent const& event, Json& object)
{
    object["last_command"] = utf8(event.subject);
    object["outcome"] = utf8(event.ending);
    if (!event.file.isEmpty())
        object["file"] = utf8(event.file);
}

void addBusCall(TraceEvent const& event, Json& object)
{
    object["path"] = utf8(event.subject);
    object["method"] = utf8(event.operation);
    if (!event.ending.isNull())
        object["error"] = utf8(event.ending);
}

void addCall(TraceEvent const& event, Json& object)
{
    object["operation"] = utf8(event.operation);
    object["subject"] = utf8(event.subject);
    object["code"] = event.code;
}

} // namespace

Json traceObject(TraceEvent const& event)
{
    Json object;
    object["command"] = event.command;
    object["depth"] = event.depth;
    object["kind"] = kKinds[event.kind];
    if (event.kind == TraceEvent::ScriptRun)
        addScript(event, object);
    else if (event.kind == TraceEvent::LastCommand)
        addLastCommand(event, object);
    else if (event.kind == TraceEvent::BusCall)
        addBusCall(event, object);
    else
        addCall(event, object);
    // Nobody waits for a last command.
    if (event.kind != TraceEvent::LastCommand)
        object["milliseconds"] = event.milliseconds;
    return object;
}
