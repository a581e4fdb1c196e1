#pragma once

#include <QJsonArray>
#include <QJsonDocument>
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
    *out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
}
