#pragma once

#include <QFont>
#include <QPainter>
#include <QString>
#include <memory>

class QIODevice;
class QPageLayout;
class QPagedPaintDevice;
class QPrinter;

namespace quorvale {

// The classic printer object: positions and sizes in twips (1440 per inch),
// measured on the printable area of the page at the printer's real
// resolution. Print and Line start the document on first use; EndDoc sends
// it. A document left unfinished (an error part-way) is discarded.
// Failures throw RuntimeError.
class Printer {
  public:
    // The system's default printer, A4 portrait.
    static std::unique_ptr<Printer> defaultPrinter();
    // A PDF file, A4 portrait; the file is written only once something is drawn.
    static std::unique_ptr<Printer> pdfFile(const QString &path);
    // A PDF written into a device the caller makes safe (a staged file whose
    // every write is checked), with the given paper and resolution (dpi).
    static std::unique_ptr<Printer> pdf(QIODevice &device, const QPageLayout &layout,
                                        int resolution = 1200);
    static QPageLayout defaultPageLayout();
    // Draws on a printer owned elsewhere, such as the one a print preview hands out.
    explicit Printer(QPrinter *device);
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

    double TextWidth(const QString &text) const;
    double TextHeight(const QString &text = QString()) const; // one line per '\n' part

    // Draws text with its top at CurrentY, then moves to the start of the next line.
    void Print(const QString &text = QString());
    void Line(double x1, double y1, double x2, double y2);
    void NewPage();
    void EndDoc();

    int Page() const { return m_page; } // 1 on the first page
    bool hasStarted() const { return m_started; }
    QPagedPaintDevice *device() const { return m_device; }

    // Paper setup used for every target unless the user changes it.
    static void applyDefaultPageSetup(QPrinter &printer);

  private:
    explicit Printer(std::unique_ptr<QPrinter> owned);
    explicit Printer(std::unique_ptr<QPagedPaintDevice> owned);
    void start();
    double toDeviceX(double twips) const;
    double toDeviceY(double twips) const;

    std::unique_ptr<QPagedPaintDevice> m_owned;
    QPagedPaintDevice *m_device;
    QPrinter *m_printer = nullptr; // when the device is a printer
    QPainter m_painter;
    QFont m_font;
    double m_x = 0;
    double m_y = 0;
    int m_page = 1;
    bool m_started = false;
    bool m_ended = false;
};

} // namespace quorvale
