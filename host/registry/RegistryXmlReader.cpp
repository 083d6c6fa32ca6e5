// SPDX-License-Identifier: MIT

#include "registry/RegistryXmlReader.h"

#include "registry/ValueEncoding.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace {

int const kCodeUnitSize = 2;

bool checkAttributes(QXmlStreamReader const& reader, QStringList const& known, QString& error)
{
    QXmlStreamAttributes const attributes = reader.attributes();
    for (QXmlStreamAttribute const& attribute : attributes) {
        QString const name = attribute.qualifiedName().toString();
        if (!known.contains(name)) {
            error = QString::fromLatin1("<%1> takes no attribute \"%2\"")
                        .arg(reader.name().toString(), name);
            return false;
        }
    }
    if (!attributes.hasAttribute(QLatin1String("name"))) {
        error = QString::fromLatin1("<%1> without a name").arg(reader.name().toString());
        return false;
    }
    return true;
}

// Null when the attribute is missing, not null when it is there and empty.
QString attribute(QXmlStreamReader const& reader, char const* name)
{
    QXmlStreamAttributes const attributes = reader.attributes();
    if (!attributes.hasAttribute(QLatin1String(name)))
        return QString();
    return QString::fromLatin1("") + attributes.value(QLatin1String(name)).toString();
}

bool decodeValue(QString const& encoding, QString& value, QString& error)
{
    if (encoding.isNull())
        return true;
    QByteArray const encoded = value.toLatin1();
    QByteArray const bytes = QByteArray::fromBase64(encoded);
    // What is no base64 is passed over in decoding; only clean text gives itself back.
    bool const isClean = bytes.toBase64() == encoded && bytes.size() % kCodeUnitSize == 0;
    if (value.isNull() || encoding != QLatin1String("base64") || !isClean) {
        error = QString::fromLatin1("a value that is no base64 of UTF-16");
        return false;
    }
    value = textOfBytes(bytes);
    return true;
}

class DocumentReader
{
public:
    DocumentReader(QByteArray const& data, RegistryXmlHandler& handler)
        : mReader(data)
        , mHandler(handler)
    {
        mReader.setNamespaceProcessing(false);
    }

    bool read(QString& error);

private:
    bool readToken();
    bool startElement();
    bool startKey();
    void endElement();
    bool refuse(char const* reason);

    QXmlStreamReader mReader;
    RegistryXmlHandler& mHandler;
    bool mHasRoot = false;
    bool mInKey = false;
    QString mError;
};

bool DocumentReader::read(QString& error)
{
    while (!mReader.atEnd()) {
        mReader.readNext();
        if (!mReader.hasError() && !readToken())
            break;
    }
    if (mError.isEmpty() && mReader.hasError())
        mError = mReader.errorString();
    if (mError.isEmpty())
        return true;
    error = QString::fromLatin1("line %1: %2").arg(mReader.lineNumber()).arg(mError);
    return false;
}

bool DocumentReader::readToken()
{
    switch (mReader.tokenType()) {
    case QXmlStreamReader::StartElement:
        return startElement();
    case QXmlStreamReader::EndElement:
        endElement();
        return true;
    case QXmlStreamReader::Characters:
        return mReader.isWhitespace() || refuse("text between the elements");
    case QXmlStreamReader::DTD:
    case QXmlStreamReader::EntityReference:
        return refuse("a document type or an entity");
    default:
        return true;
    }
}

bool DocumentReader::startElement()
{
    if (!mHasRoot) {
        mHasRoot = mReader.name() == QLatin1String("registry");
        return mHasRoot || refuse("the document is no <registry>");
    }
    if (mInKey)
        return refuse("an element inside a <key>");
    if (mReader.name() == QLatin1String("key"))
        return startKey();
    if (mReader.name() != QLatin1String("dir"))
        return refuse("neither <dir> nor <key>");
    return checkAttributes(mReader, QStringList(QLatin1String("name")), mError)
        && mHandler.enterDirectory(attribute(mReader, "name"), mError);
}

bool DocumentReader::startKey()
{
    static QStringList const known
        = QString::fromLatin1("name,type,default,regexp,value,encoding").split(QLatin1Char(','));
    mInKey = true;
    RegistryXmlKey key;
    key.name = attribute(mReader, "name");
    key.type = attribute(mReader, "type");
    key.defaultValue = attribute(mReader, "default");
    key.regExp = attribute(mReader, "regexp");
    key.value = attribute(mReader, "value");
    return checkAttributes(mReader, known, mError)
        && decodeValue(attribute(mReader, "encoding"), key.value, mError)
        && mHandler.addKey(key, mError);
}

void DocumentReader::endElement()
{
    if (mReader.name() == QLatin1String("dir"))
        mHandler.leaveDirectory();
    mInKey = false;
}

bool DocumentReader::refuse(char const* reason)
{
    mError = QLatin1String(reason);
    return false;
}

} // namespace

bool refuse(QString& error, char const* reason, QString const& subject)
{
    error = QString::fromLatin1(reason).arg(subject);
    return false;
}

bool readRegistryXml(QByteArray const& data, RegistryXmlHandler& handler, QString& error)
{
    DocumentReader reader(data, handler);
    return reader.read(error);
}
