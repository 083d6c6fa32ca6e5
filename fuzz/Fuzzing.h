// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// The fuzzer: takes one input, whatever bytes it is made of. Each program has one.
extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size);

/// Called once before the first input: makes the application object, keeps Qt's messages back, and
/// ends the program outside the sandbox, as inputs are written to fixed places.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

/// Ends the program with `property` as its last words when that does not hold.
void fuzzCheck(bool holds, char const* property);

/// The bytes as UTF-8. Byte 0xfd, which is none in UTF-8, takes the next two bytes as one UTF-16
/// unit, so that lone surrogates can be had.
QString fuzzText(QByteArray const& bytes);

/// The input as an array that can be kept.
QByteArray fuzzBytes(uint8_t const* data, std::size_t size);

/// Writes a file that holds exactly `content`, and makes the directories above it; ends the program
/// when it cannot.
void fuzzWriteFile(QString const& fileName, QByteArray const& content);
