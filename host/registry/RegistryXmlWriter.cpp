// SPDX-License-Identifier: MIT

#include "registry/RegistryXmlWriter.h"

#include "registry/DefaultNode.h"
#include "registry/LiveTree.h"
#include "registry/Place.h"
#include "registry/RegistryKey.h"
#include "registry/ValueEncoding.h"
#include "registry/ValueType.h"

namespace {

void writeText(QXmlStreamWriter& writer, char const* attribute, QString const& text)
{
    writer.writeAttribute(QLatin1String(attribute), text);
}

} // namespace

RegistryXmlWriter::RegistryXmlWriter(DefaultNode const& declarations, LiveNode const& live,
                                     QStringList const& foreign)
    : mDeclarations(declarations)
    , mLive(live)
    , mForeign(foreign)
    , mWriter(&mDocument)
{
    mWriter.setAutoFormatting(true);
}

QByteArray RegistryXmlWriter::write(QString const& key)
{
    mWriter.writeStartDocument();
    mWriter.writeStartElement(QLatin1String("registry"));
    KeyPieces pieces(key);
    while (pieces.next() && !pieces.isLast())
        startDirectory(pieces.piece());
    Place const place = findPlace(mDeclarations, mLive, key);
    writeNode(key, pieces.piece(), *place.declaration, place.live);
    mWriter.writeEndDocument();
    return mDocument;
}

void RegistryXmlWriter::writeNode(QString const& key, QString const& name,
                                  DefaultNode const& declaration, LiveNode const* live)
{
    if (mForeign.contains(key))
        return;
    if (declaration.isValue()) {
        writeValue(name, declaration, live);
        return;
    }
    startDirectory(name);
    writeChildren(key, declaration, live);
    mWriter.writeEndElement();
}

void RegistryXmlWriter::writeChildren(QString const& key, DefaultNode const& declaration,
                                      LiveNode const* live)
{
    QList<DefaultNode*> const children = declaration.children();
    for (DefaultNode const* child : children) {
        QString const name = child->name();
        if (!isPlaceholder(name))
            writeNode(childKey(key, name), name, *child, live ? live->child(name) : nullptr);
    }
    if (!live)
        return;
    QStringList const sessions = live->sessionsByAge();
    for (QString const& session : sessions)
        writeNode(childKey(key, session), session, *declaration.templateDirectory(),
                  live->child(session));
}

void RegistryXmlWriter::writeValue(QString const& name, DefaultNode const& declaration,
                                   LiveNode const* live)
{
    mWriter.writeEmptyElement(QLatin1String("key"));
    writeText(mWriter, "name", name);
    writeText(mWriter, "type", typeWord(declaration.type()));
    writeText(mWriter, "default", declaration.defaultValue());
    if (!declaration.regExp().isNull())
        writeText(mWriter, "regexp", declaration.regExp());
    if (!live || !live->hasValue())
        return;
    if (isXmlText(live->value())) {
        writeText(mWriter, "value", live->value());
        return;
    }
    writeText(mWriter, "value", QString::fromLatin1(bytesOfText(live->value()).toBase64()));
    writeText(mWriter, "encoding", QString::fromLatin1("base64"));
}

void RegistryXmlWriter::startDirectory(QString const& name)
{
    mWriter.writeStartElement(QLatin1String("dir"));
    writeText(mWriter, "name", name);
}
