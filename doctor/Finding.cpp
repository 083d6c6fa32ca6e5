// SPDX-License-Identifier: MIT

#include "doctor/Finding.h"

Finding makeFinding(QString const& file, QString const& key, Problem const& problem)
{
    return {problem.severity, file, problem.line, key, problem.message};
}

bool hasFault(QList<Finding> const& findings)
{
    for (Finding const& finding : findings) {
        if (finding.severity == Fault)
            return true;
    }
    return false;
}
