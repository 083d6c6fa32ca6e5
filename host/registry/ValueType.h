// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QString>

/// The word for a type, as the defaults files and REG_PARAM_TYPE spell it.
QString typeWord(_RegEntryType type);

/// Finds the type of a word. False, `type` untouched, for an unknown word.
bool typeFromWord(QString const& word, _RegEntryType& type);

/// True when `text` may be a value of the type:
///
/// | type         | admitted                                                                  |
/// |--------------|---------------------------------------------------------------------------|
/// | string, rc4  | anything                                                                  |
/// | uuid         | what the toolkit reads as a UUID other than the nil one; empty: none set   |
/// | char         | exactly one character (a surrogate pair is one)                           |
/// | ipv4         | four decimal octets without leading zeros; empty: none set                |
/// | number       | a decimal integer of 64 bits, with or without a sign                      |
/// | float        | a finite decimal number, with or without an exponent                      |
/// | date         | a day of the calendar as yyyy-MM-dd; empty: none set                      |
/// | bool         | yes, true, on, 1, ok, no, false, off, 0, ko                               |
bool typeAdmits(_RegEntryType type, QString const& text);
