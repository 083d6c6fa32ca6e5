// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestBackend.h"

/// A registry without a display profile. One that is created is listed once it is committed, as a
/// registry does it.
class DisplayBackend : public TestBackend
{
public:
    DisplayBackend() { addDirectory("root/Display/Profiles", QStringList()); }

    int create(QString const& key, _RegEntryType const& type) override
    {
        mCreated.append(key.section('/', -1));
        return TestBackend::create(key, type);
    }

    int commit(QString const& key) override
    {
        int const code = TestBackend::commit(key);
        if (code != 0 || key != "root/Display")
            return code;
        for (QString const& name : static_cast<QStringList const&>(mCreated))
            addDirectory("root/Display/Profiles", QStringList(name + "/"));
        return code;
    }

    /// Adds a profile of that label.
    void addProfile(QString const& name, QString const& label)
    {
        addDirectory("root/Display/Profiles", QStringList(name + "/"));
        addValue("root/Display/Profiles/" + name + "/label", label);
    }

    /// Makes the profiles of that label the ones in use.
    void use(QString const& label) { addValue("root/Display/Configuration/primaryprofile", label); }

private:
    // The names of the profiles that are created.
    QStringList mCreated;
};
