#pragma once

#include "output/headermerge.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <ostream>

// Readable failure messages for the values the export tests compare.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QJsonValue &value, std::ostream *out)
{
    if (value.isObject() || value.isArray()) {
        const QJsonDocument doc = value.isObject() ? QJsonDocument(value.toObject())
                                                   : QJsonDocument(value.toArray());
        *out << doc.toJson(QJsonDocument::Compact).toStdString();
    } else {
        *out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
    }
}

namespace quorvale {
inline void PrintTo(const HeaderMerge &m, std::ostream *out)
{
    *out << '(' << m.row1 << ',' << m.col1 << ")-(" << m.row2 << ',' << m.col2 << ')';
}
} // namespace quorvale
