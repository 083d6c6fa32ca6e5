// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"
#include "doctor/ExaminedView.h"
#include "doctor/Explanation.h"
#include "doctor/Names.h"
#include "doctor/Options.h"
#include "doctor/RegistryKeys.h"
#include "doctor/Reports.h"
#include "doctor/TreeCheck.h"
#include "doctor/ViewMap.h"
#include "installation/Installation.h"
#include "options/ExitStatus.h"
#include "registry/RegistryKey.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

namespace {

void write(FILE* stream, QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    // A reader that has gone away is not this program's failure.
    static_cast<void>(std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream));
    static_cast<void>(std::fflush(stream));
}

void complain(QString const& message)
{
    write(stderr, QLatin1String("zelvo-view-doctor: ") + message + QLatin1Char('\n'));
}

/// The key as the host names it; people may leave out the "root/" and end it with a "/".
QString fullKey(QString typed)
{
    while (typed.endsWith(QLatin1Char('/')))
        typed.chop(1);
    QString const root = RegistryVocabulary::rootWord();
    return isAtOrUnder(typed, root) ? typed : childKey(root, typed);
}

QString unknownKeyMessage(ExaminedView& view, QString const& key)
{
    return QLatin1String("the view has no such key") + didYouMean(likelyKey(view, key));
}

int explainKey(ExaminedView& view, Options const& options, QString const& key)
{
    ExaminedEntry const entry(view, key);
    if (!entry.isKnown()) {
        QString const message = unknownKeyMessage(view, key);
        if (options.json)
            write(stdout, jsonOf(key, message));
        else
            complain(key + QLatin1String(": ") + message);
        return kFindings;
    }
    Explanation const explanation = explain(view, entry);
    LiveAnswers answers = LiveAnswers();
    if (options.run)
        answers = askLive(entry);
    Style const style = Style::sOfOutput();
    if (options.json)
        write(stdout, jsonOf(explanation, options.run ? &answers : nullptr));
    else
        write(stdout,
              textOf(explanation, style) + (options.run ? textOf(answers, style) : QString()));
    return hasFault(explanation.findings) ? kFindings : 0;
}

int explainKeys(ExaminedView& view, Options const& options)
{
    int worst = 0;
    for (QString const& key : options.keys)
        worst = qMax(worst, explainKey(view, options, fullKey(key)));
    return worst;
}

int check(ExaminedView& view, Options const& options)
{
    QString const wrappers = view.kit().wrappersDirectory().path();
    if (!QFileInfo(wrappers).isDir()) {
        complain(wrappers + QLatin1String(": no such directory"));
        return kDoctorUsageError;
    }
    QList<Finding> const findings = checkWrappers(view);
    if (options.json) {
        write(stdout, jsonOf(findings));
    } else {
        Style const style = Style::sOfOutput();
        for (Finding const& finding : findings)
            write(stdout, textOf(finding, style));
    }
    return hasFault(findings) ? kFindings : 0;
}

int printMap(ExaminedView& view, Options const& options)
{
    QList<MapRow> const rows = viewMap(view);
    if (options.json)
        write(stdout, jsonOf(rows));
    else if (options.markdown)
        write(stdout, markdownOf(rows));
    else
        write(stdout, textOf(rows, Style::sOfOutput()));
    return 0;
}

/// An installed doctor looks at what the installed host serves, where no other directory is named.
void completeFromInstallation(Options& options)
{
    Installation const installation;
    if (options.baseDir.isEmpty() && installation.exists())
        options.baseDir = installation.baseDir();
}

int carryOut(ExaminedView& view, Options const& options)
{
    switch (options.command) {
    case Options::Explain:
        return explainKeys(view, options);
    case Options::Check:
        return check(view, options);
    case Options::Map:
        break;
    }
    return printMap(view, options);
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    int exitStatus = 0;
    if (!readOptions(argc, argv, options, exitStatus))
        return exitStatus;

    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QLatin1String("zelvo-view-doctor"));
    completeFromInstallation(options);
    ExaminedView view;
    QString error;
    if (!view.open(options.baseDir, options.defaults, options.registryFile, error)) {
        complain(error);
        return kDoctorUsageError;
    }
    return carryOut(view, options);
}
