// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string>

#include <nlohmann/json.hpp>

struct TraceEvent;

// Of an object the members stay in the order in which they were put in.
typedef nlohmann::ordered_json Json;

inline std::string utf8(QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    return std::string(bytes.constData(), size_t(bytes.size()));
}

/// On one line, whatever the texts in it are.
inline QString jsonText(Json const& object)
{
    return QString::fromUtf8(object.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

/// An event for a program.
Json traceObject(TraceEvent const& event);
