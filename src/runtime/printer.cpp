#include "runtime/printer.h"

#include "runtime/printerfonts.h"
#include "runtime/runtimeerror.h"
#include "runtime/twips.h"

#include <QFontMetricsF>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

namespace quorvale {

namespace {

RuntimeError printerError()
{
    return RuntimeError(ErrorNumber::PrinterError, QStringLiteral("Printer error"));
}

} // namespace

QPageLayout Printer::defaultPageLayout()
{
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(10, 10, 10, 10),
                       QPageLayout::Millimeter);
}

std::unique_ptr<Printer> Printer::pdf(QIODevice &device, const QPageLayout &layout,
                                      int resolution)
{
    auto writer = std::make_unique<QPdfWriter>(&device);
    writer->setResolution(resolution);
    writer->setPageLayout(layout);
    return std::unique_ptr<Printer>(new Printer(std::unique_ptr<QPagedPaintDevice>(std::move(writer))));
}

Printer::Printer(std::unique_ptr<QPagedPaintDevice> owned) : Printer(owned.get())
{
    m_owned = std::move(owned);
}

Printer::Printer(QPagedPaintDevice *device, std::function<void()> abort)
    : m_device(device), m_abort(std::move(abort))
{
    ensureCjkFontSubstitutes();
    m_font = QFont(QStringLiteral("宋体"));
    m_font.setPointSizeF(9);
}

Printer::~Printer()
{
    if (m_started && !m_ended) {
        if (m_abort)
            m_abort();
        if (m_painter.isActive())
            m_painter.end();
    }
}

double Printer::ScaleWidth() const
{
    return dotsToTwips(m_device->width(), m_device->logicalDpiX());
}

double Printer::ScaleHeight() const
{
    return dotsToTwips(m_device->height(), m_device->logicalDpiY());
}

void Printer::setFontName(const QString &name)
{
    m_font.setFamily(name);
}

void Printer::setFontSize(double points)
{
    if (points <= 0)
        throw RuntimeError(ErrorNumber::InvalidPropertyValue, QStringLiteral("Invalid property value"));
    m_font.setPointSizeF(points);
}

void Printer::setFontBold(bool bold)
{
    m_font.setBold(bold);
}

const QFontMetricsF &Printer::metrics() const
{
    for (const auto &[font, metrics] : m_metrics)
        if (font.isCopyOf(m_font))
            return metrics;
    constexpr size_t kept = 4;
    if (m_metrics.size() == kept)
        m_metrics.erase(m_metrics.begin());
    m_metrics.emplace_back(m_font, QFontMetricsF(m_font, m_device));
    return m_metrics.back().second;
}

double Printer::TextWidth(const QString &text) const
{
    const QFontMetricsF &metrics = this->metrics();
    if (!text.contains(QLatin1Char('\n')))
        return dotsToTwips(metrics.horizontalAdvance(text), m_device->logicalDpiX());
    double widest = 0;
    for (const QString &line : text.split(QLatin1Char('\n')))
        widest = qMax(widest, metrics.horizontalAdvance(line));
    return dotsToTwips(widest, m_device->logicalDpiX());
}

double Printer::TextHeight(const QString &text) const
{
    const auto lines = text.count(QLatin1Char('\n')) + 1;
    return dotsToTwips(lines * metrics().height(), m_device->logicalDpiY());
}

void Printer::Print(const QString &text)
{
    start();
    if (!text.isEmpty()) {
        m_painter.setFont(m_font);
        m_painter.drawText(QPointF(toDeviceX(m_x), toDeviceY(m_y) + metrics().ascent()), text);
    }
    m_y += TextHeight(text);
    m_x = 0;
}

void Printer::Line(double x1, double y1, double x2, double y2)
{
    start();
    m_painter.drawLine(QPointF(toDeviceX(x1), toDeviceY(y1)),
                       QPointF(toDeviceX(x2), toDeviceY(y2)));
    m_x = x2;
    m_y = y2;
}

void Printer::Box(double x1, double y1, double x2, double y2, const QColor &fill)
{
    start();
    m_painter.fillRect(
        QRectF(QPointF(toDeviceX(x1), toDeviceY(y1)), QPointF(toDeviceX(x2), toDeviceY(y2)))
            .normalized(),
        fill);
    m_x = x2;
    m_y = y2;
}

void Printer::NewPage()
{
    start();
    if (!m_device->newPage())
        throw printerError();
    ++m_page;
    m_x = 0;
    m_y = 0;
}

void Printer::EndDoc()
{
    if (m_started && !m_ended) {
        if (!m_painter.end())
            throw printerError();
    }
    m_ended = m_started;
}

void Printer::start()
{
    if (m_started)
        return;
    if (!m_painter.begin(m_device))
        throw printerError();
    m_started = true;
    // About half a point: visible rules at any resolution.
    QPen pen(Qt::black);
    pen.setWidthF(m_device->logicalDpiX() / 144.0);
    m_painter.setPen(pen);
}

double Printer::toDeviceX(double twips) const
{
    return twipsToDots(twips, m_device->logicalDpiX());
}

double Printer::toDeviceY(double twips) const
{
    return twipsToDots(twips, m_device->logicalDpiY());
}

} // namespace quorvale
