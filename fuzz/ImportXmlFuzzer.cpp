// SPDX-License-Identifier: MIT

// The input is a document to import into the registry. It is taken as a whole or not at all; the
// export of what was taken, imported elsewhere, gives the same registry.

#include "Fuzzing.h"
#include "ShippedRegistry.h"

#include <QMap>
#include <QStringList>
#include <QXmlStreamReader>

namespace {

/// A registry that holds something already: a session, and a value that is not committed.
void fill(RegistryHost& registry)
{
    QString const session = QLatin1String(
        "root/ConnectionType/rdesktop/connections/{11111111-1111-4111-8111-111111111111}");
    QString const allowed = QLatin1String("root/USB/root/mass-storage/allowed");
    bool const isFilled = registry.create(session, REG_TYPE_STRING) == 0
        && registry.set(session + QLatin1String("/label"), QLatin1String("Desk"), REG_PARAM_VALUE)
            == 0
        && registry.commit(session) == 0
        && registry.set(allowed, QLatin1String("0"), REG_PARAM_VALUE) == 0;
    fuzzCheck(isFilled, "a session can be made");
}

QMap<QString, _RegEntryChange> pendingOf(RegistryHost& registry)
{
    QMap<QString, _RegEntryChange> changes;
    fuzzCheck(registry.changes(changes) == 0, "what is pending can be listed");
    return changes;
}

/// A plain second reading of a document: its last word on each key that it gives a value as it
/// stands.
QMap<QString, QString> valuesOf(QByteArray const& document)
{
    QMap<QString, QString> values;
    QStringList names;
    QXmlStreamReader reader(document);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            names.removeLast();
        if (!reader.isStartElement())
            continue;
        QXmlStreamAttributes const attributes = reader.attributes();
        names.append(attributes.value(QLatin1String("name")).toString());
        QString const key = QStringList(names.mid(1)).join(QLatin1String("/"));
        values.remove(key);
        if (attributes.hasAttribute(QLatin1String("value"))
            && !attributes.hasAttribute(QLatin1String("encoding")))
            values.insert(key, attributes.value(QLatin1String("value")).toString());
    }
    fuzzCheck(!reader.hasError(), "a document that is taken can be read to its end");
    return values;
}

void checkTaken(RegistryHost& registry, QByteArray const& document)
{
    QMap<QString, QString> const values = valuesOf(document);
    QMap<QString, QString>::const_iterator value = values.constBegin();
    for (; value != values.constEnd(); ++value) {
        QString read;
        fuzzCheck(registry.get(value.key(), read, REG_PARAM_VALUE, QString()) == 0
                      && read == value.value(),
                  "all values of a document that is taken are there");
    }
}

/// Of a value at or under `key` that it could have been set as well.
void checkValues(RegistryHost& registry, QString const& key)
{
    QMap<QString, _RegNodeType> nodes;
    fuzzCheck(registry.get(key, nodes, REG_PARAM_VALUE, QString()) == 0, "a listed key is known");
    QMap<QString, _RegNodeType>::const_iterator node = nodes.constBegin();
    for (; node != nodes.constEnd(); ++node) {
        if (node.value() == REG_NODE_DIR || node.value() == REG_NODE_KEY)
            checkValues(registry, node.key());
        else if (node.value() == REG_NODE_VALUE)
            fuzzCheck(registry.set(key, node.key(), REG_PARAM_VALUE) == 0,
                      "an import takes no value that could not be set");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    ShippedRegistry registry;
    fill(registry);
    QByteArray const before = registry.exported();
    QMap<QString, _RegEntryChange> const pending = pendingOf(registry);

    QByteArray document = fuzzBytes(data, size);
    int const code = registry.importRegistry(document);
    fuzzCheck(code == 0 || code == 1, "an import answers 0 or 1");
    QByteArray const after = registry.exported();
    if (code != 0) {
        fuzzCheck(after == before && pendingOf(registry) == pending,
                  "a refused document changes nothing");
        return 0;
    }

    checkTaken(registry, fuzzBytes(data, size));
    ShippedRegistry other;
    QByteArray copy = after;
    fuzzCheck(other.importRegistry(copy) == 0 && other.exported() == after,
              "an export makes the same registry elsewhere");
    fuzzCheck(registry.importRegistry(copy) == 0 && registry.exported() == after,
              "an import of its own export changes nothing");
    checkValues(other, QLatin1String("root"));
    return 0;
}
