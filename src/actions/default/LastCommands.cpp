// SPDX-License-Identifier: MIT

#include "actions/default/LastCommands.h"

namespace {

struct LastCommand
{
    char const* word;
    char const* commandLine;
};

// Highest first.
LastCommand const kRanking[] = {
    {"reboot", "wlox-reboot"},
    {"logout", "wlox-logoff"},
    {"restart-display", "wlox-restartX"},
    {"restart-desktop", "xfce4-panel --restart"},
};
int const kUnranked = sizeof(kRanking) / sizeof(kRanking[0]);

/// The place of a command in the ranking, counted from the top.
int rankOf(QString const& command)
{
    int rank = 0;
    while (rank < kUnranked && command != QLatin1String(kRanking[rank].word))
        ++rank;
    return rank;
}

} // namespace

QString lastCommandAfterOffer(QString const& pending, QString const& offer)
{
    int const pendingRank = rankOf(pending);
    bool const givesWay = pendingRank == kUnranked || rankOf(offer) < pendingRank;
    return givesWay ? offer : pending;
}

QString lastCommandLine(QString const& command)
{
    int const rank = rankOf(command);
    return rank == kUnranked ? command : QLatin1String(kRanking[rank].commandLine);
}
