// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// One <key> of a document, its attributes decoded. An attribute that is not there is null.
struct RegistryXmlKey
{
    QString name;
    QString type;
    QString defaultValue;
    QString regExp;
    QString value;
};

/// Receives the contents of a registry document in document order. An operation that answers false,
/// with its reason in `error`, ends the reading.
class RegistryXmlHandler
{
public:
    virtual ~RegistryXmlHandler() { }

    virtual bool enterDirectory(QString const& name, QString& error) = 0;
    virtual void leaveDirectory() = 0;
    virtual bool addKey(RegistryXmlKey const& key, QString& error) = 0;
};

/// Lets an operation of a handler fail: puts `reason`, with `subject` for its "%1", into `error`.
///
/// @return false.
bool refuse(QString& error, char const* reason, QString const& subject);

/// Reads a document of the form
///
///     <registry>
///       <dir name="root">
///         <key name="…" type="…" default="…" regexp="…" value="…" encoding="base64"/>
///       </dir>
///     </registry>
///
/// and hands each element to `handler`. Nothing but these elements and attributes is taken, and no
/// document type declaration.
///
/// @return false with line and reason in `error`.
bool readRegistryXml(QByteArray const& data, RegistryXmlHandler& handler, QString& error);
