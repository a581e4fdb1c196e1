#pragma once

#include <QByteArray>
#include <QHash>
#include <vector>

namespace quorvale::xlsx {

struct Vocabulary;

// A cell format wanted for one cell: its current format plus what the
// written value and the formatting calls change. -1 / 0 mean "keep".
struct StyleRequest {
    // A cell the export creates starts from the format a new workbook gives
    // it, not from whatever the workbook's first format happens to be.
    static constexpr quint32 OwnBase = 0xFFFFFFFFu;

    quint32 baseXf = 0;
    qint8 numFmt = 0;      // 1 date, 2 date and time (only over General)
    qint8 quotePrefix = -1;
    qint8 horizontal = -1; // index into StyleSheet::horizontalNames
    qint8 vertical = -1;   // index into StyleSheet::verticalNames
    qint8 border = -1;     // 0 none, 1 thin on all four sides
    qint8 locked = -1;     // 0 unlocked, 1 locked (a protected sheet's rule)
    double fontSize = 0;

    bool keepsBase() const
    {
        return numFmt == 0 && quotePrefix < 0 && horizontal < 0 && vertical < 0 && border < 0 &&
               locked < 0 && fontSize == 0;
    }
    bool operator==(const StyleRequest &) const = default;
};

size_t qHash(const StyleRequest &request, size_t seed = 0) noexcept;

// styles.xml: new fonts, borders, number formats and cell formats are appended
// after the existing ones, which keep their positions and bytes; an existing
// entry is reused only when it is equal in full. A minimal part (even an
// empty <styleSheet/>) gets the collections every reader expects.
class StyleSheet {
public:
    static const char *const horizontalNames[];
    static const char *const verticalNames[];

    explicit StyleSheet(QByteArray xml); // throws when the part is unusable
    static QByteArray defaultXml(const Vocabulary &vocabulary);

    // Index of a cellXfs entry with the request applied (appended if new).
    quint32 resolve(const StyleRequest &request);
    bool isModified() const;
    // Whether a protected sheet forbids changing cells of this format:
    // Excel locks every cell whose format does not say locked="0".
    bool isLocked(quint32 xf) const;
    QByteArray toXml() const;
    quint32 xfCount() const { return quint32(m_xfs.items.size()); }

private:
    // One collection element of the style sheet and its items.
    struct Collection {
        QByteArray localName;
        qsizetype begin = -1;      // start tag of the container; -1 when absent
        qsizetype startEnd = -1;   // one past its start tag
        qsizetype closeBegin = -1; // its end tag, or -1 when self-closing
        qsizetype end = -1;        // one past the container
        std::vector<QByteArray> items;
        size_t originalCount = 0;
        QHash<QByteArray, int> byText;
    };
    std::vector<Collection *> collections();
    std::vector<const Collection *> collections() const;
    void parseCollection(Collection &c, qsizetype begin, qsizetype end);
    void completeMinimalPart();
    int addItem(Collection &c, const QByteArray &text);
    QByteArray tag(const char *local) const { return m_prefix + local; }
    QByteArray ownFont(double size) const;
    int fontWithSize(int fontId, double size);
    int borderFor(bool thin);
    int dateTimeFormat();
    bool isGeneral(int numFmtId) const;
    QByteArray collectionXml(const Collection &c) const;
    static std::pair<qsizetype, qsizetype> childElement(QByteArrayView body, QByteArrayView local);
    qsizetype insertionPoint(const Collection &c) const;

    QByteArray m_xml;
    QByteArray m_prefix;
    qsizetype m_rootStartEnd = 0;
    qsizetype m_rootClose = 0;
    Collection m_numFmts, m_fonts, m_fills, m_borders, m_styleXfs, m_xfs, m_cellStyles;
    std::vector<std::pair<QByteArray, qsizetype>> m_children; // local name, begin
    QHash<StyleRequest, quint32> m_resolved;
    QHash<quint64, int> m_fontSizes;
    QHash<int, int> m_borderIds;
    int m_dateTimeFormat = -1;
    mutable std::vector<signed char> m_locked; // per format: -1 not yet known
};

} // namespace quorvale::xlsx
