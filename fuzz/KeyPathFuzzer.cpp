// SPDX-License-Identifier: MIT

// The input is a key, and behind a 0xff a registry template for it: path operations, the
// translation of UUIDs in both directions, and the folder where the key's scripts are looked for.

#include "Fuzzing.h"
#include "ShippedRegistry.h"
#include "actions/ActionKit.h"
#include "actions/default/Wrapper.h"
#include "common/RegistryVocabulary.h"
#include "common/UuidComponents.h"
#include "plugin/ViewKeyMap.h"
#include "tree/ConfigTree.h"
#include "tree/KeyPath.h"

#include <QDir>
#include <QStringList>

using RegistryVocabulary::registryPlaceholder;
using RegistryVocabulary::viewPlaceholder;

namespace {

char const kSeparator = '\xff';
char const kWrappers[] = "/tmp/fuzzed/wrappers";

/// A host, and the kit of the view on it.
RegistryHost& host()
{
    static ShippedRegistry host;
    if (!ActionKit::instance()) {
        ActionKit::init(host, QDir(QLatin1String(kWrappers)));
        registerViewKeys(*ActionKit::instance(), host);
    }
    return host;
}

void checkPath(QString const& text)
{
    KeyPath const path(text);
    QString const separator = QLatin1String("/");
    QString const whole = text.contains(separator)
        ? path.dirname().toString() + separator + path.basename()
        : path.basename();
    fuzzCheck(whole == text, "directory and name make up the path");
    fuzzCheck(!path.basename().contains(separator), "a name holds no separator");
    QStringList const names = path.splitEntryNames();
    fuzzCheck(!names.contains(QString()), "no entry name is empty");
    fuzzCheck(path.isRootOf(text) && path.isRootOf(text + separator + text),
              "a path is the root of itself and of what is below it");
    fuzzCheck(KeyPath(text + separator + text).removeRoot(text).toString() == separator + text,
              "removing the root leaves the rest");
}

void checkTranslation(QString const& key, QString const& placeholder)
{
    QString const translated = ActionKit::translateUuid(key, placeholder);
    fuzzCheck(ActionKit::translateUuid(translated, placeholder) == translated,
              "translating twice is translating once");
    fuzzCheck(firstUuidComponent(translated).isNull(), "no UUID is left by a translation");
    fuzzCheck(translated.count(QLatin1Char('/')) == key.count(QLatin1Char('/')),
              "a translation keeps the number of components");
    if (firstUuidComponent(key).isNull())
        fuzzCheck(translated == key, "a key without a UUID is its own translation");
}

void checkResolution(QString const& key, QString const& registryTemplate)
{
    QString const uuid = firstUuidComponent(key);
    QString const resolved = ActionKit::resolveUuid(key, registryTemplate);
    if (uuid.isNull()) {
        fuzzCheck(resolved == registryTemplate, "without a UUID a template stays as it is");
        return;
    }
    fuzzCheck(key.startsWith(pathToFirstUuid(key)) && pathToFirstUuid(key).endsWith(uuid),
              "the path to the first UUID ends with it");
    fuzzCheck(!resolved.split(QLatin1Char('/')).contains(registryPlaceholder()),
              "no placeholder is left in a resolved key");
    // A text that says for itself that it is a UUID is put in whole, and found again.
    QString const session = QLatin1String("x/") + registryPlaceholder();
    fuzzCheck(ActionKit::resolveUuid(key, session) == QLatin1String("x/") + uuid,
              "the first UUID takes the placeholder's place");
}

/// For a key that the view serves: scripts lie in the folder of the key that is declared for it.
void checkFolder(QString const& key)
{
    ConfigTree tree(KeyPath("root/zelvo-view"));
    QString const declared = ActionKit::translateUuid(key, viewPlaceholder());
    if (!tree.handlesKey(declared, &host().defaultSettings()))
        return;
    IConfigEntry const* const entry = tree.resolveUuids(key);
    fuzzCheck(!entry || entry->path() == key.mid(qstrlen("root/")), "an entry knows its path");
    if (!entry)
        return;
    QString const script = Wrapper::path(*entry, Wrapper::kGet);
    fuzzCheck(script == QDir::cleanPath(script)
                  && script.startsWith(QLatin1String(kWrappers) + QLatin1String("/zelvo-view")),
              "scripts lie inside the wrappers directory");
    fuzzCheck(script
                  == QLatin1String(kWrappers) + declared.mid(qstrlen("root"))
                      + QLatin1String(Wrapper::kGet),
              "the folder of a script is named like the declared key");
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    static_cast<void>(host());
    QList<QByteArray> const parts = fuzzBytes(data, size).split(kSeparator);
    QString const key = fuzzText(parts.value(0));
    checkPath(key);
    checkTranslation(key, viewPlaceholder());
    checkTranslation(key, registryPlaceholder());
    checkResolution(key, fuzzText(parts.value(1)));
    checkFolder(key);
    checkFolder(QLatin1String("root/zelvo-view/") + key);
    return 0;
}
