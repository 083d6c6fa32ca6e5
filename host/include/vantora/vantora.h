// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/// The backend: the whole key space of the host, plugins included. The operations mean what those
/// of `ConfigPlugin` mean and answer the same codes; `get`, listings and `contains` see what is
/// committed. May be called from any thread.
class Vantora
{
public:
    Vantora();
    virtual ~Vantora();

    virtual int set(QString const& key, QString const& value, _RegEntryParam const& param) = 0;
    virtual int get(QString const& key, QMap<QString, _RegNodeType>& result,
                    _RegEntryParam const& param, QString const& extra)
        = 0;
    virtual int contains(QString const& key) = 0;
    virtual int commit(QString const& key) = 0;
    virtual int apply(QString const& key, QString const& command) = 0;
    virtual int clone(QString const& source, QString const& target) = 0;
    virtual int rollback(QString const& key) = 0;
    virtual int watch(QStringList const& keys, int id) = 0;
    virtual int changes(QMap<QString, _RegEntryChange>& changes) = 0;
    virtual int create(QString const& key, _RegEntryType const& type) = 0;
    virtual int del(QString const& key) = 0;
    virtual int importRegistry(QByteArray& data) = 0;
    virtual int exportRegistry(QString const& key, QByteArray& data) = 0;

    /// Reads one value as text, the default where there is no value.
    ///
    /// @return 0; non-zero when the key is unknown or a directory: `out` then stays as it was.
    int get(QString const& key, QString& out, _RegEntryParam const& param, QString const& extra);

    /// Reads one value as a decimal integer, the default where there is no value.
    ///
    /// @return 0; non-zero when the key is unknown, a directory or no number: `out` then stays
    ///         as it was.
    int get(QString const& key, int& out, _RegEntryParam const& param, QString const& extra);

private:
    Q_DISABLE_COPY(Vantora)
};
