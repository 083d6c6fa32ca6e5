// SPDX-License-Identifier: MIT

#pragma once

class QByteArray;

/// Whether a script that is given a file with a value seems to keep what is in it without looking
/// whether there is anything. It is a guess, made from the words of a shell script; of a script in
/// another language, and of one that leaves the value to a program of its own, nothing is guessed.
bool seemsToKeepEmptyValue(QByteArray const& content);
