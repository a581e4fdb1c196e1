#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QIODevice;
class QPageLayout;
class QPagedPaintDevice;

namespace quorvale {

// How a grid shows its rows, which its printout follows: the body font and
// the height of one row in twips.
struct PrintLook {
    QFont font;
    int rowHeight = 0;
};

// The classic printer object: positions and sizes in twips (1440 per inch),
// measured on the printable area of the page at the device's real
// resolution. Print and Line start the document on first use; EndDoc ends
// it. A document left unfinished (an error part-way) is discarded. It draws
// on any paged device: a PDF writer here, a real printer or a preview's
// printer handed in by the windows. Failures throw RuntimeError.
class Printer {
  public:
    // A PDF written into a device the caller makes safe (a staged file whose
    // every write is checked), with the given paper and resolution (dpi).
    static std::unique_ptr<Printer> pdf(QIODevice &device, const QPageLayout &layout,
                                        int resolution = 1200);
    // A4 portrait with 10 mm margins: the paper of every target unless the
    // user changes it.
    static QPageLayout defaultPageLayout();
    // Draws on a device owned elsewhere; `abort` is called for a document
    // left unfinished (a printer's job is cancelled).
    explicit Printer(QPagedPaintDevice *device, std::function<void()> abort = {});
    ~Printer();
    Printer(const Printer &) = delete;
    Printer &operator=(const Printer &) = delete;

    double ScaleWidth() const;
    double ScaleHeight() const;

    double CurrentX() const { return m_x; }
    void setCurrentX(double x) { m_x = x; }
    double CurrentY() const { return m_y; }
    void setCurrentY(double y) { m_y = y; }

    QString FontName() const { return m_font.family(); }
    void setFontName(const QString &name);
    double FontSize() const { return m_font.pointSizeF(); }
    void setFontSize(double points);
    bool FontBold() const { return m_font.bold(); }
    void setFontBold(bool bold);
    const QFont &font() const { return m_font; }
    // A font kept by the caller: switching back and forth between kept
    // fonts reuses what Qt loaded for them.
    void setFont(const QFont &font) { m_font = font; }

    double TextWidth(const QString &text) const;
    double TextHeight(const QString &text = QString()) const; // one line per '\n' part

    // Draws text with its top at CurrentY, then moves to the start of the next line.
    void Print(const QString &text = QString());
    void Line(double x1, double y1, double x2, double y2);
    // A box filled with the colour, as Line with the BF option draws it.
    void Box(double x1, double y1, double x2, double y2, const QColor &fill);
    void NewPage();
    void EndDoc();

    int Page() const { return m_page; } // 1 on the first page
    bool hasStarted() const { return m_started; }
    QPagedPaintDevice *device() const { return m_device; }

  private:
    Printer(std::unique_ptr<QPagedPaintDevice> owned);
    void start();
    double toDeviceX(double twips) const;
    double toDeviceY(double twips) const;
    // Metrics of the current font on the device. Made afresh, they load the
    // font anew each time; a few are kept, for the fonts last used.
    const QFontMetricsF &metrics() const;

    std::unique_ptr<QPagedPaintDevice> m_owned;
    QPagedPaintDevice *m_device;
    std::function<void()> m_abort;
    QPainter m_painter;
    QFont m_font;
    mutable std::vector<std::pair<QFont, QFontMetricsF>> m_metrics;
    double m_x = 0;
    double m_y = 0;
    int m_page = 1;
    bool m_started = false;
    bool m_ended = false;
};

} // namespace quorvale
