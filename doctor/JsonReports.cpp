// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"
#include "doctor/BackEndWords.h"
#include "doctor/Reports.h"

#include <string>

#include <nlohmann/json.hpp>

namespace {

typedef nlohmann::ordered_json Json;

std::string utf8(QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    return std::string(bytes.constData(), size_t(bytes.size()));
}

QString lineOf(Json const& json)
{
    std::string const text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    return QString::fromUtf8(text.data(), int(text.size())) + QLatin1Char('\n');
}

Json arrayOf(QStringList const& texts)
{
    Json array = Json::array();
    for (QString const& text : texts)
        array.push_back(utf8(text));
    return array;
}

char const* kindWord(EntryKind kind)
{
    switch (kind) {
    case SessionDirectory:
        return "session";
    case PlainDirectory:
        return "directory";
    case ValueKey:
        break;
    }
    return "key";
}

char const* reasonWord(ServingAction::Reason reason)
{
    switch (reason) {
    case ServingAction::RegisteredForKey:
        return "registered";
    case ServingAction::OfferedBySettingClass:
        return "setting class";
    case ServingAction::DefaultOfOperation:
        break;
    }
    return "default";
}

template <class Described> void addKind(Json& object, Described const& described)
{
    object["kind"] = kindWord(described.kind);
    if (described.kind != ValueKey)
        return;
    object["type"] = utf8(RegistryVocabulary::entryTypes().at(described.type));
    object["default"] = utf8(described.defaultValue);
}

Json fileObject(ExpectedFile const& file)
{
    Json object;
    object["path"] = utf8(file.path);
    object["exists"] = file.exists;
    return object;
}

Json findingObject(Finding const& finding)
{
    Json object;
    object["severity"] = finding.severity == Note ? "note" : "fault";
    object["file"] = utf8(finding.file);
    if (finding.line > 0)
        object["line"] = finding.line;
    if (!finding.key.isEmpty())
        object["key"] = utf8(finding.key);
    object["message"] = utf8(finding.message);
    return object;
}

Json findingArray(QList<Finding> const& findings)
{
    Json array = Json::array();
    for (Finding const& finding : findings)
        array.push_back(findingObject(finding));
    return array;
}

Json declarationArray(QList<DeclarationLine> const& lines)
{
    Json array = Json::array();
    for (DeclarationLine const& line : lines) {
        Json object;
        object["line"] = line.line;
        object["name"] = utf8(line.declaration.name);
        object["registryKey"] = utf8(line.declaration.registryKey);
        array.push_back(object);
    }
    return array;
}

Json operationObject(OperationExplanation const& operation)
{
    Json object;
    object["operation"] = operation.operation->name;
    if (!operation.isForKey) {
        object["action"] = nullptr;
        object["because"] = operation.operation->reach();
        return object;
    }
    object["action"] = operation.action.className;
    object["because"] = reasonWord(operation.reason);
    object["backEnd"] = backEndWord(operation.action.backEnd);
    object["registryKeys"] = arrayOf(operation.registryKeys);
    object["targets"] = arrayOf(operation.targets);
    object["otherwise"] = operation.operation->otherwise;
    if (operation.action.runsScript)
        object["script"] = fileObject(operation.script);
    if (operation.action.readsEnvironmentFile) {
        object["environmentFile"] = fileObject(operation.environmentFile);
        object["declarations"] = declarationArray(operation.declarations);
    }
    return object;
}

char const* endingWord(WrapperRun::Ending ending)
{
    switch (ending) {
    case WrapperRun::Exited:
        return "exited";
    case WrapperRun::EndedBySignal:
        return "signal";
    case WrapperRun::NotStarted:
        return "not started";
    case WrapperRun::EnvironmentTooLong:
        return "environment too long";
    case WrapperRun::TimedOut:
        break;
    }
    return "timed out";
}

Json runObject(WrapperRun const& run)
{
    Json object;
    object["script"] = utf8(run.script);
    object["ending"] = endingWord(run.ending);
    if (run.ending == WrapperRun::Exited)
        object["exitCode"] = run.exitCode;
    object["countsAsSuccess"] = run.isSuccess();
    object["milliseconds"] = run.milliseconds;
    if (keepsOutput(run))
        object["outputBytes"] = run.outputBytes;
    object["standardError"]
        = std::string(run.errorOutput.constData(), size_t(run.errorOutput.size()));
    return object;
}

Json answerObject(Answer const& answer)
{
    Json object;
    object["key"] = utf8(answer.viewKey);
    if (answer.isAnswered)
        object["answer"] = utf8(answer.text);
    else
        object["answer"] = nullptr;
    object["milliseconds"] = answer.milliseconds;
    object["scripts"] = Json::array();
    for (WrapperRun const& run : answer.scripts)
        object["scripts"].push_back(runObject(run));
    return object;
}

char const* sourceWord(LiveAnswers const& answers)
{
    switch (answers.source) {
    case LiveAnswers::Script:
        return "script";
    case LiveAnswers::Action:
        return backEndWord(answers.backEnd);
    default:
        return "default";
    }
}

Json answersObject(LiveAnswers const& answers)
{
    Json object;
    object["isVisible"] = Json::array();
    for (Answer const& answer : answers.visibility)
        object["isVisible"].push_back(answerObject(answer));
    if (answers.source != LiveAnswers::Nobody) {
        object["get"] = answerObject(answers.value);
        object["get"]["source"] = sourceWord(answers);
    }
    return object;
}

} // namespace

QString jsonOf(Explanation const& explanation, LiveAnswers const* answers)
{
    Json object;
    object["key"] = utf8(explanation.key);
    object["registeredAs"] = utf8(explanation.viewKey);
    addKind(object, explanation);
    if (explanation.kind == ValueKey)
        object["readOnly"] = explanation.isReadOnly;
    object["folder"] = utf8(explanation.folder);
    object["operations"] = Json::array();
    for (OperationExplanation const& operation : explanation.operations)
        object["operations"].push_back(operationObject(operation));
    object["files"] = arrayOf(explanation.files);
    object["visibility"] = Json::array();
    for (ExpectedFile const& file : explanation.visibility)
        object["visibility"].push_back(fileObject(file));
    object["findings"] = findingArray(explanation.findings);
    if (answers)
        object["answers"] = answersObject(*answers);
    return lineOf(object);
}

QString jsonOf(QString const& key, QString const& error)
{
    Json object;
    object["key"] = utf8(key);
    object["error"] = utf8(error);
    return lineOf(object);
}

QString jsonOf(QList<Finding> const& findings)
{
    Json object;
    object["findings"] = findingArray(findings);
    return lineOf(object);
}

QString jsonOf(QList<MapRow> const& rows)
{
    Json object;
    object["keys"] = Json::array();
    for (MapRow const& row : rows) {
        Json key;
        key["key"] = utf8(row.viewKey);
        addKind(key, row);
        key["backEnd"] = backEndWord(row.backEnd);
        key["registryKeys"] = arrayOf(row.registryKeys);
        key["operations"] = arrayOf(row.operations);
        object["keys"].push_back(key);
    }
    return lineOf(object);
}
