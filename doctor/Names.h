// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// Which of `known` somebody may have meant by `name`: one that differs in the case of its letters,
/// in punctuation, in the order of its letters, or in one of them. Null when there is none, or when
/// `name` is one of them.
QString likelyMeant(QString const& name, QStringList const& known);

/// The question that ends a message; empty when `likely` is null.
QString didYouMean(QString const& likely);
