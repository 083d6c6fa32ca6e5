// SPDX-License-Identifier: MIT

#include "actions/default/ApplyTask.h"

#include "actions/default/DefaultApplyAction.h"
#include "actions/default/ScriptProcess.h"
#include "actions/default/Wrapper.h"
#include "common/Files.h"
#include "common/Text.h"

#include <QFile>
#include <QStringList>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace {

/// Creates a request file.
///
/// @return its name; an empty text when there is none to be had: the script then runs without the
///         means to ask for a command.
QString createRequestFile()
{
    char name[] = "/tmp/wlox-zelvo-view-XXXXXX";
    // A script that another thread starts at this moment must not get it.
    int const descriptor = ::mkostemp(name, O_CLOEXEC);
    if (descriptor < 0)
        return QString();
    ::close(descriptor);
    return QString::fromLatin1(name);
}

void offerLines(QString const& requestFile)
{
    QFile file(requestFile);
    if (!openRegularFile(file, QIODevice::ReadOnly | QIODevice::Text)
        || file.size() > kLongestScriptOutput)
        return;
    while (!file.atEnd())
        DefaultApplyAction::sSetLastApplyCommand(latin1UpToNul(file.readLine()));
}

} // namespace

ApplyTask::ApplyTask(QFileInfo const& script)
    : mScript(script)
{
}

void ApplyTask::run()
{
    QString const requestFile = createRequestFile();
    Wrapper wrapper(mScript.filePath());
    wrapper.setEnvironment(QStringList() << QLatin1String("LAST_APPLY_COMMAND=") + requestFile);
    bool const succeeded = wrapper.run();
    if (requestFile.isEmpty())
        return;
    if (succeeded)
        offerLines(requestFile);
    // A script may have removed it.
    static_cast<void>(QFile::remove(requestFile));
}
