// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

#include <vector>

/// The arguments or the environment of a program, as the system takes them. To be made before a
/// process is forked: beside the locks that other threads held then, the child may not allocate.
class ProgramTexts
{
public:
    ProgramTexts();

    void append(QByteArray const& text);
    bool isEmpty() const { return mTexts.isEmpty(); }

    /// One for each text, and a null behind them; this object's.
    char* const* pointers() const { return mPointers.data(); }

private:
    Q_DISABLE_COPY(ProgramTexts)

    QList<QByteArray> mTexts;
    std::vector<char*> mPointers;
};
