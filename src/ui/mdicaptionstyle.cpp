#include "ui/mdicaptionstyle.h"

#include <QApplication>
#include <QFontMetrics>
#include <QStyleOptionTitleBar>
#include <QWidget>

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
    // The active frame draws its caption bold, the wider of the two.
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int text = QFontMetrics(font).horizontalAdvance(widget->windowTitle());
    const int overhead = base - labelWidth(*this, *widget, base);
    constexpr int kSpare = 8;
    return qMax(base, text + overhead + kSpare);
}

} // namespace quorvale
