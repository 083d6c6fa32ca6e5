// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// The directories of default settings that a program of the host reads, in order: those that it
/// was given, or else those shipped with it, and then "defaults" of the plugins' base directory if
/// there is one.
QStringList defaultsDirectories(QStringList const& given, QString const& baseDir);
