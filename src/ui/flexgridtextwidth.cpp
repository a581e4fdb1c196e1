#include "ui/flexgridtextwidth.h"

#include <QImage>

namespace quorvale {

namespace {

// Metrics follow the device's logical DPI; an image of the wanted DPI is the
// simplest device that has one without a window.
QFontMetricsF metricsAt(const QFont &font, int dpi)
{
    QImage device(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = qRound(dpi / 0.0254);
    device.setDotsPerMeterX(dotsPerMeter);
    device.setDotsPerMeterY(dotsPerMeter);
    return QFontMetricsF(font, &device);
}

constexpr int kMaxCachedTexts = 50000;

} // namespace

TextWidthCache::TextWidthCache(const QFont &font, int dpi)
    : m_font(font), m_dpi(dpi), m_metrics(metricsAt(font, dpi))
{
}

double TextWidthCache::width(const QString &text)
{
    if (text.isEmpty())
        return 0.0;
    auto it = m_widths.constFind(text);
    if (it != m_widths.constEnd())
        return it.value();
    const double twips = m_metrics.horizontalAdvance(text) * 1440.0 / m_dpi;
    if (m_widths.size() >= kMaxCachedTexts)
        m_widths.clear();
    m_widths.insert(text, twips);
    return twips;
}

} // namespace quorvale
