#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <functional>
#include <initializer_list>
#include <optional>

namespace quorvale::xlsx {

// One tag found by scanning XML text. Parts we edit are spliced as text so
// that everything we do not understand survives unchanged.
struct XmlTag {
    qsizetype begin = 0; // '<'
    qsizetype end = 0;   // one past '>'
    QByteArrayView name; // qualified name as written
    bool closing = false;
    bool selfClosing = false;
    QByteArrayView localName() const;
    QByteArrayView prefix() const; // "x:" or empty
};

// Small text-level XML helpers shared by the package parts.
class XmlText {
public:
    // Next start or end tag at or after pos; comments, declarations and
    // processing instructions are skipped. False at the end of the text.
    static bool nextTag(QByteArrayView text, qsizetype &pos, XmlTag &tag);
    // Position one past the end of the element whose start tag is given.
    static qsizetype elementEnd(QByteArrayView text, const XmlTag &start);
    // Attribute value (unescaped) of a start tag's text, by qualified name.
    static std::optional<QByteArray> attribute(QByteArrayView tagText, QByteArrayView name);
    // The raw (still escaped) value, without copying; for numbers and references.
    static std::optional<QByteArrayView> rawAttribute(QByteArrayView tagText, QByteArrayView name);
    // A count or index attribute (digits only, up to nine); the fallback for
    // anything else.
    static int numberAttribute(QByteArrayView tagText, QByteArrayView name, int fallback);
    // A boolean attribute as the schema spells it: "1" or "true".
    static bool isTrue(QByteArrayView tagText, QByteArrayView name);
    // Start tag text with the attribute set (escaped) or removed.
    static QByteArray setAttribute(QByteArrayView tagText, QByteArrayView name,
                                   QByteArrayView value);
    static QByteArray removeAttribute(QByteArrayView tagText, QByteArrayView name);
    // Every attribute of a start tag's text, as written (name qualified, value raw).
    static void forEachAttribute(QByteArrayView tagText,
                                 const std::function<void(QByteArrayView name,
                                                          QByteArrayView rawValue)> &visit);
    // Namespace URI bound to a prefix ("x:" or "" for the default namespace)
    // by the tag itself or, failing that, by its enclosing tags (innermost
    // first); nullopt when none binds it.
    static std::optional<QByteArray> namespaceOf(QByteArrayView prefix, QByteArrayView tagText,
                                                 std::initializer_list<QByteArrayView> scope = {});
    // The prefix that a tag or its enclosing tags bind to the URI ("" for the
    // default namespace, which attributes never take); nullopt when unbound.
    static std::optional<QByteArray> prefixOf(QByteArrayView uri, QByteArrayView tagText,
                                              std::initializer_list<QByteArrayView> scope = {});
    // An attribute named by namespace and local name, whatever prefix the
    // writer chose; `accepts` says which namespace URIs count.
    static std::optional<QByteArray>
    attributeIn(QByteArrayView tagText, std::initializer_list<QByteArrayView> scope,
                const std::function<bool(QByteArrayView uri)> &accepts, QByteArrayView localName);
    static QByteArray escape(const QString &text);
    static QString unescape(QByteArrayView text);
    // Cell reference helpers: "AB12" <-> (row 12, column 28).
    static bool parseCellRef(QByteArrayView ref, int &row, int &col);
    static QByteArray columnName(int col);
    static QByteArray cellRef(int row, int col);
};

} // namespace quorvale::xlsx
