// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"
#include "doctor/BackEndWords.h"
#include "doctor/Reports.h"
#include "tree/KeyPath.h"

namespace {

char const* const kIntroduction
    = "# The keys of the view\n"
      "\n"
      "What stands behind each key where no wrapper script does. A script comes first, for every\n"
      "operation; a value that neither gives is the default. \"{uuid}\" is a session's UUID, "
      "\"{UUID}\" "
      "the\n"
      "same in the registry; in a display profile it is that of the profile in use.\n"
      "\n"
      "Made by `zelvo-view-doctor map --markdown`.\n";

QString code(QString text)
{
    return QLatin1Char('`') + text.replace(QLatin1Char('|'), QLatin1String("\\|"))
        + QLatin1Char('`');
}

QString codes(QStringList const& texts)
{
    QStringList result;
    for (QString const& text : texts)
        result.append(code(text));
    return result.join(QLatin1String(", "));
}

QString behind(MapRow const& row)
{
    return row.registryKeys.isEmpty() ? QLatin1String(keylessBackEndWords(row.backEnd))
                                      : codes(row.registryKeys);
}

/// The part of the view that a key belongs to: the first name below the root.
QString areaOf(MapRow const& row)
{
    return KeyPath(row.viewKey).splitEntryNames().value(1);
}

QString tableRow(MapRow const& row)
{
    bool const isValue = row.kind == ValueKey;
    QStringList const cells = QStringList()
        << code(row.viewKey.section(QLatin1Char('/'), 1))
        << (isValue ? RegistryVocabulary::entryTypes().at(row.type) : QLatin1String("directory"))
        << (row.defaultValue.isEmpty() || !isValue ? QString() : code(row.defaultValue))
        << behind(row) << row.operations.join(QLatin1String(", "));
    return QLatin1String("| ") + cells.join(QLatin1String(" | ")) + QLatin1String(" |\n");
}

} // namespace

QString markdownOf(QList<MapRow> const& rows)
{
    QString text = QLatin1String(kIntroduction);
    QString area;
    for (MapRow const& row : rows) {
        if (areaOf(row) != area) {
            area = areaOf(row);
            text += QString::fromLatin1("\n## %1\n\n"
                                        "| key, below `zelvo-view/` | type | default | stands for "
                                        "| serves |\n"
                                        "|---|---|---|---|---|\n")
                        .arg(area);
        }
        text += tableRow(row);
    }
    return text;
}
