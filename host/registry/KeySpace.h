// SPDX-License-Identifier: MIT

#pragma once

#include "registry/ResultCodes.h"

#include <vantora/types.h>

#include <QMap>
#include <QString>

/// A part of the key space with its own way of keeping values.
///
/// What is set, created and deleted is pending until it is committed; `get` and `contains` see what
/// is committed. Every operation answers one of the result codes. Calls must not overlap.
class KeySpace
{
public:
    virtual ~KeySpace() { }

    virtual int set(QString const& key, QString const& value) = 0;
    virtual int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam param)
        = 0;
    virtual int contains(QString const& key) = 0;
    virtual int commit(QString const& key) = 0;
    virtual int rollback(QString const& key) = 0;
    virtual int create(QString const& key) = 0;
    virtual int del(QString const& key) = 0;

    /// Adds what is pending.
    virtual void changes(QMap<QString, _RegEntryChange>& changes) = 0;
};
