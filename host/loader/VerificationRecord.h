// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// What a module says of its own build: the text that its qt_plugin_query_verification_data
/// answers, one "name=value" a line.
///
/// The text comes from a file that may be anything, so nothing is assumed about it: fields that are
/// missing are null, lines that are no field are passed over, and of a repeated field the first
/// counts.
class VerificationRecord
{
public:
    explicit VerificationRecord(QByteArray const& text);

    QString pattern() const { return mPattern; }
    QString version() const { return mVersion; }
    QString debug() const { return mDebug; }
    QString buildKey() const { return mBuildKey; }

    /// Compares the record with what this host loads.
    ///
    /// @return null when the module may be loaded, else the first thing that speaks against it, as
    ///         a sentence for a person.
    QString mismatch() const;

private:
    bool hasFittingVersion() const;

    QString mPattern;
    QString mVersion;
    QString mDebug;
    QString mBuildKey;
};
