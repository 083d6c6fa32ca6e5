// SPDX-License-Identifier: MIT

#pragma once

#include "registry/RegistryHost.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QtTest>

QString const kFirst = QLatin1String("{11111111-1111-4111-8111-111111111111}");
QString const kSecond = QLatin1String("{22222222-2222-4222-8222-222222222222}");
QString const kRdp = QLatin1String("root/ConnectionType/rdesktop/connections");

/// A registry with the shipped default settings (or those of another directory) on a database.
class OpenRegistry : public RegistryHost
{
public:
    explicit OpenRegistry(QString const& database = QLatin1String(":memory:"),
                          QString const& defaults = QLatin1String(DEFAULTS_DIR))
    {
        QString error;
        if (!loadDefaults(defaults, error) || !open(database, error))
            qFatal("%s", qPrintable(error));
    }

    using RegistryHost::get;
    using RegistryHost::set;

    int set(QString const& key, QString const& value) { return set(key, value, REG_PARAM_VALUE); }

    int create(QString const& key) { return RegistryHost::create(key, REG_TYPE_STRING); }

    /// The answers to a `get`, one a line: node type, blank, text; the code alone if it is not 0.
    QStringList answers(QString const& key, _RegEntryParam param = REG_PARAM_VALUE)
    {
        QMap<QString, _RegNodeType> result;
        int const code = get(key, result, param, QString());
        if (code != 0)
            return QStringList(QString::fromLatin1("code %1").arg(code));
        QStringList lines;
        QMap<QString, _RegNodeType>::const_iterator answer = result.constBegin();
        for (; answer != result.constEnd(); ++answer)
            lines.append(QString::fromLatin1("%1 ").arg(answer.value()) + answer.key());
        return lines;
    }

    /// The only answer, in the same form.
    QString answer(QString const& key, _RegEntryParam param = REG_PARAM_VALUE)
    {
        return answers(key, param).join(QLatin1String("\n"));
    }

    /// What is pending, one a line: change kind, blank, key.
    QStringList pending()
    {
        QMap<QString, _RegEntryChange> all;
        changes(all);
        QStringList lines;
        QMap<QString, _RegEntryChange>::const_iterator change = all.constBegin();
        for (; change != all.constEnd(); ++change)
            lines.append(QString::fromLatin1("%1 ").arg(change.value()) + change.key());
        return lines;
    }

    /// Creates and commits a session with a label.
    void addSession(QString const& key, QString const& label)
    {
        QCOMPARE(create(key), 0);
        QCOMPARE(set(key + QLatin1String("/label"), label), 0);
        QCOMPARE(commit(key), 0);
    }
};
