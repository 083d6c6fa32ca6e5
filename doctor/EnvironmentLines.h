// SPDX-License-Identifier: MIT

#pragma once

#include "actions/registry/EnvironmentFile.h"
#include "doctor/Problem.h"

/// A declaration and where it stands.
struct DeclarationLine
{
    int line;
    EnvironmentDeclaration declaration;

    bool isTarget() const;
};

/// An environment file as the plugin reads it.
struct EnvironmentLines
{
    QList<DeclarationLine> declarations;

    /// What the plugin reads otherwise than whoever wrote it will have meant.
    QList<Problem> problems;
};

EnvironmentLines readEnvironmentLines(QString const& fileName);
