#include "ui/mdicaptionstyle.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QStyleOptionTitleBar>
#include <QWidget>
#include <cmath>

namespace quorvale {

namespace {

// Room for the caption's text besides the icon and buttons, which the
// style places in a title bar of the given width.
int labelWidth(const QStyle &style, const QWidget &frame, int width)
{
    QStyleOptionTitleBar bar;
    bar.initFrom(&frame);
    bar.rect = QRect(0, 0, width, style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &frame));
    bar.titleBarFlags = frame.windowFlags();
    bar.titleBarState = Qt::WindowMinimized;
    bar.text = frame.windowTitle();
    // The icon takes its room before the caption.
    bar.icon = frame.windowIcon();
    return style.subControlRect(QStyle::CC_TitleBar, &bar, QStyle::SC_TitleBarLabel, &frame)
        .width();
}

} // namespace

int MdiCaptionStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                                 const QWidget *widget) const
{
    const int base = QProxyStyle::pixelMetric(metric, option, widget);
    if (metric != PM_MdiSubWindowMinimizedWidth || !widget)
        return base;
    // The caption is drawn bold and elided twice: by the frame, to the label
    // of a title bar inset by its 4 px border on each side, and by the style
    // (Fusion), to that label less 14 px, in exact (fractional) advances.
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const double text = QFontMetricsF(font).horizontalAdvance(widget->windowTitle());
    const int overhead = base - labelWidth(*this, *widget, base);
    constexpr int kBorder = 4;
    constexpr int kStyleMargin = 14;
    constexpr int kSpare = 2;
    return qMax(base, int(std::ceil(text)) + kStyleMargin + overhead + 2 * kBorder + kSpare);
}

} // namespace quorvale
