// SPDX-License-Identifier: MIT

// The input is a file of default settings. It is taken as a whole or not at all; what was taken can
// be found key by key, and its export can be imported and is then the same.

#include "Fuzzing.h"
#include "registry/DefaultNode.h"
#include "registry/DefaultSettings.h"
#include "registry/RegistryHost.h"

#include <vantora/registry.h>

namespace {

char const kFolder[] = "/tmp/fuzzed/defaults";
int const kDeepest = 64;

void checkAnswers(DefaultSettings& settings, DefaultNode const& node, QString const& key, int depth)
{
    Reg::NodeSet answers;
    fuzzCheck(depth <= kDeepest, "no key lies too deep");
    fuzzCheck(settings.query(key, answers, QString()) == 0, "a declared key is known");
    if (node.isValue()) {
        Reg::Entry const* const value
            = answers.size() == 1 ? dynamic_cast<Reg::Entry const*>(answers.at(0)) : nullptr;
        fuzzCheck(value && value->absoluteName() == key && value->value() == node.defaultValue()
                      && value->type() == node.type(),
                  "a value answers with itself");
        return;
    }
    QList<DefaultNode*> const children = node.children();
    fuzzCheck(answers.size() == children.size(), "a directory answers with all its children");
    for (int i = 0; i < children.size(); ++i) {
        QString const childKey = key + QLatin1Char('/') + children.at(i)->name();
        fuzzCheck(answers.at(i)->absoluteName() == childKey, "children keep their order");
        checkAnswers(settings, *children.at(i), childKey, depth + 1);
    }
}

void checkExport(QString const& key)
{
    RegistryHost host;
    QString error;
    fuzzCheck(host.loadDefaults(QLatin1String(kFolder), error)
                  && host.open(QLatin1String(":memory:"), error),
              "what was taken once is taken again");
    QByteArray document;
    if (host.exportRegistry(key, document) != 0)
        return;
    QByteArray again = document;
    fuzzCheck(host.importRegistry(again) == 0, "an export can be imported");
    QByteArray second;
    fuzzCheck(host.exportRegistry(key, second) == 0 && second == document,
              "an import of an export changes nothing");
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QString const folder = QLatin1String(kFolder);
    fuzzWriteFile(folder + QLatin1String("/input.xml"), fuzzBytes(data, size));
    DefaultSettings settings;
    QString error;
    bool const isTaken = settings.load(folder, error);
    QList<DefaultNode*> const first = settings.top().children();
    fuzzCheck(isTaken || (first.isEmpty() && !error.isEmpty()),
              "a refused file leaves nothing but a message");
    for (DefaultNode const* const node : first) {
        checkAnswers(settings, *node, node->name(), 1);
        checkExport(node->name());
    }
    return 0;
}
