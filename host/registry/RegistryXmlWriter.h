// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QXmlStreamWriter>

class DefaultNode;
class LiveNode;

/// Writes a part of the registry as a document that `readRegistryXml` reads: declared values with
/// type, default, regular expression and, where one is set, value; sessions in place of templates.
class RegistryXmlWriter
{
public:
    /// @param foreign  roots of keys that are left out.
    ///
    /// The registry's two parts must outlive the writer.
    RegistryXmlWriter(DefaultNode const& declarations, LiveNode const& live,
                      QStringList const& foreign);

    /// The document for `key` and all under it, inside the directories above it. Call once, with a
    /// key that exists.
    QByteArray write(QString const& key);

private:
    Q_DISABLE_COPY(RegistryXmlWriter)

    void writeNode(QString const& key, QString const& name, DefaultNode const& declaration,
                   LiveNode const* live);
    void writeChildren(QString const& key, DefaultNode const& declaration, LiveNode const* live);
    void writeValue(QString const& name, DefaultNode const& declaration, LiveNode const* live);
    void startDirectory(QString const& name);

    DefaultNode const& mDeclarations;
    LiveNode const& mLive;
    QStringList const mForeign;
    QByteArray mDocument;
    QXmlStreamWriter mWriter;
};
