#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace quorvale::xlsx {

// The namespaces a workbook's parts are written in. Most writers use the
// transitional ones; Excel writes ISO Strict ones when asked to, and a Strict
// package must get Strict parts and relationships, or no reader opens it.
// Package-level names (content types, the relationships part) are the same
// in both.
struct Vocabulary {
    bool strict;
    const char *main;          // SpreadsheetML elements
    const char *relationships; // r:id attributes; relationship types live under it

    QByteArray relationshipType(QByteArrayView name) const
    {
        return QByteArray(relationships) + '/' + name.toByteArray();
    }
    // The vocabulary whose main or relationships namespace the URI is, or nullptr.
    static const Vocabulary *ofMainNamespace(QByteArrayView uri);
    static const Vocabulary *ofRelationshipsNamespace(QByteArrayView uri);

    static const Vocabulary Transitional;
    static const Vocabulary Strict;
};

} // namespace quorvale::xlsx
