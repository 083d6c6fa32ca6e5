// SPDX-License-Identifier: MIT

#pragma once

#include <QFileInfo>
#include <QRunnable>

/// One run of an apply script. The script's whole environment is "LAST_APPLY_COMMAND", the name of
/// a file into which it may write the last commands that it asks for, one a line; one that has
/// grown longer than any output asks for none. Runs on the request's pool, which deletes it.
class ApplyTask : public QRunnable
{
public:
    explicit ApplyTask(QFileInfo const& script);

    void run() override;
    ~ApplyTask() override { }

private:
    Q_DISABLE_COPY(ApplyTask)

    QFileInfo mScript;
};
