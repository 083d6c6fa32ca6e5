// SPDX-License-Identifier: MIT

#pragma once

#include "Fuzzing.h"
#include "registry/RegistryHost.h"

/// The stand-in host in memory, with the shipped default settings and no live values.
class ShippedRegistry : public RegistryHost
{
public:
    ShippedRegistry()
    {
        QString error;
        fuzzCheck(loadDefaults(QLatin1String(DEFAULTS_DIR), error), "the defaults can be loaded");
        fuzzCheck(open(QLatin1String(":memory:"), error), "a registry in memory can be opened");
    }

    /// All of the registry but what plugins serve, as a document.
    QByteArray exported()
    {
        QByteArray document;
        fuzzCheck(exportRegistry(QLatin1String("root"), document) == 0,
                  "the registry can be exported");
        return document;
    }
};
