// SPDX-License-Identifier: MIT

#pragma once

#include "registry/RegistryXmlReader.h"

#include <QStack>

class DefaultNode;

/// Adds the declarations of a document to a tree of default settings.
class DefaultsLoader : public RegistryXmlHandler
{
public:
    /// @param top  the directory that the first <dir> lies in; must outlive the loader.
    explicit DefaultsLoader(DefaultNode& top);

    bool enterDirectory(QString const& name, QString& error) override;
    void leaveDirectory() override { mDirectories.pop(); }
    bool addKey(RegistryXmlKey const& key, QString& error) override;

private:
    bool checkDirectory(QString const& name, QString& error) const;

    // The directories that are open, the innermost on top.
    QStack<DefaultNode*> mDirectories;
};
