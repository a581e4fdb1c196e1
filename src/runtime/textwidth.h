#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QHash>
#include <QString>
#include <functional>

namespace quorvale {

// The width of a text in twips, in a font at a resolution.
using TextWidthFn = std::function<double(const QString &text)>;

// Text widths in twips for one font at one DPI. Reports measure every cell
// of every row while filling, and most texts repeat, so each distinct text
// is measured once.
class TextWidthCache {
  public:
    TextWidthCache(const QFont &font, int dpi);

    const QFont &font() const { return m_font; }
    int dpi() const { return m_dpi; }
    bool matches(const QFont &font, int dpi) const { return dpi == m_dpi && font == m_font; }

    double width(const QString &text);

  private:
    QFont m_font;
    int m_dpi;
    QFontMetricsF m_metrics;
    QHash<QString, double> m_widths;
};

// The font's metrics in whole pixels at the dpi, as a window lays it out.
QFontMetrics fontMetricsAt(const QFont &font, int dpi);
// Widths in the font at the dpi, each distinct text measured once.
TextWidthFn textWidthsIn(const QFont &font, int dpi);
// The logical DPI windows measure at: the primary screen's, 96 without one.
int screenDpi();

} // namespace quorvale
