#include "runtime/textwidth.h"

#include "runtime/printerfonts.h"
#include "runtime/twips.h"

#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <memory>

namespace quorvale {

namespace {

// Metrics follow the device's logical DPI; an image of the wanted DPI is the
// simplest device that has one without a window.
QImage deviceAt(int dpi)
{
    // Measured in the font the grid shows and the printer draws.
    ensureCjkFontSubstitutes();
    QImage device(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = qRound(dpi / 0.0254);
    device.setDotsPerMeterX(dotsPerMeter);
    device.setDotsPerMeterY(dotsPerMeter);
    return device;
}

QFontMetricsF metricsAt(const QFont &font, int dpi)
{
    const QImage device = deviceAt(dpi);
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
    const double twips = dotsToTwips(m_metrics.horizontalAdvance(text), m_dpi);
    if (m_widths.size() >= kMaxCachedTexts)
        m_widths.clear();
    m_widths.insert(text, twips);
    return twips;
}

QFontMetrics fontMetricsAt(const QFont &font, int dpi)
{
    const QImage device = deviceAt(dpi);
    return QFontMetrics(font, &device);
}

TextWidthFn textWidthsIn(const QFont &font, int dpi)
{
    auto cache = std::make_shared<TextWidthCache>(font, dpi);
    return [cache](const QString &text) { return cache->width(text); };
}

int screenDpi()
{
    const QScreen *screen = qobject_cast<QGuiApplication *>(QCoreApplication::instance())
                                ? QGuiApplication::primaryScreen()
                                : nullptr;
    return screen ? qRound(screen->logicalDotsPerInchX()) : 96;
}

} // namespace quorvale
