// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// What this process holds of the machine at one moment. Two of them show what an operation left
/// behind.
class Footprint
{
public:
    /// Looks at this process now.
    Footprint();

    /// What is here and was not in `before`: a line for each open descriptor, file in "/tmp" and
    /// child process.
    QStringList newSince(Footprint const& before) const;

    int descriptorCount() const { return mDescriptors.size(); }
    int temporaryFileCount() const { return mTemporaryFiles.size(); }
    int childCount() const { return mChildren.size(); }

private:
    QStringList mDescriptors;
    QStringList mTemporaryFiles;
    QStringList mChildren;
};
