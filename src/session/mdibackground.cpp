#include "session/mdibackground.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <tuple>

namespace quorvale {

namespace {
// Letters on a unit cap height; each returns its width.
qreal letterQ(QPainterPath &p)
{
    p.addEllipse(QRectF(0, 0, 0.9, 1));
    p.moveTo(0.56, 0.7);
    p.lineTo(0.96, 1.06);
    return 0.96;
}

qreal letterU(QPainterPath &p)
{
    p.moveTo(0, 0);
    p.lineTo(0, 0.64);
    p.arcTo(QRectF(0, 0.28, 0.72, 0.72), 180, 180);
    p.lineTo(0.72, 0);
    return 0.72;
}

qreal letterO(QPainterPath &p)
{
    p.addEllipse(QRectF(0, 0, 0.9, 1));
    return 0.9;
}

qreal letterR(QPainterPath &p)
{
    p.moveTo(0, 1);
    p.lineTo(0, 0);
    p.lineTo(0.36, 0);
    p.arcTo(QRectF(0.1, 0, 0.52, 0.52), 90, -180);
    p.lineTo(0, 0.52);
    p.moveTo(0.3, 0.52);
    p.lineTo(0.64, 1);
    return 0.64;
}

qreal letterV(QPainterPath &p)
{
    p.moveTo(0, 0);
    p.lineTo(0.39, 1);
    p.lineTo(0.78, 0);
    return 0.78;
}

qreal letterA(QPainterPath &p)
{
    p.moveTo(0, 1);
    p.lineTo(0.4, 0);
    p.lineTo(0.8, 1);
    p.moveTo(0.17, 0.62);
    p.lineTo(0.63, 0.62);
    return 0.8;
}

qreal letterL(QPainterPath &p)
{
    p.moveTo(0, 0);
    p.lineTo(0, 1);
    p.lineTo(0.52, 1);
    return 0.52;
}

qreal letterE(QPainterPath &p)
{
    p.moveTo(0.56, 0);
    p.lineTo(0, 0);
    p.lineTo(0, 1);
    p.lineTo(0.56, 1);
    p.moveTo(0, 0.5);
    p.lineTo(0.48, 0.5);
    return 0.56;
}

// Faint diagonal hatching, the texture both pictures share.
void drawHatch(QPainter &p, const QSize &size, const QColor &color, qreal step)
{
    p.save();
    p.setPen(QPen(color, 1));
    const int span = size.width() + size.height();
    for (qreal x = -size.height(); x < span; x += step)
        p.drawLine(QPointF(x, size.height()), QPointF(x + size.height(), 0));
    p.restore();
}
} // namespace

namespace {
constexpr qreal wordmarkStroke = 0.1;

// The whole name on a unit cap height; units receives its width.
QPainterPath wordmarkPath(qreal &units)
{
    using Letter = qreal (*)(QPainterPath &);
    static const Letter letters[] = {letterQ, letterU, letterO, letterR,
                                     letterV, letterA, letterL, letterE};
    const qreal gap = 0.3;
    QPainterPath path;
    qreal x = wordmarkStroke / 2;
    for (Letter letter : letters) {
        QPainterPath glyph;
        const qreal width = letter(glyph);
        path.addPath(glyph.translated(x, 0));
        x += width + gap;
    }
    units = x - gap + wordmarkStroke / 2;
    return path;
}
} // namespace

qreal wordmarkWidth(qreal height)
{
    qreal units = 0;
    wordmarkPath(units);
    return units * height / (1 + wordmarkStroke);
}

qreal drawWordmark(QPainter &painter, const QRectF &box)
{
    qreal units = 0;
    const QPainterPath path = wordmarkPath(units);
    const qreal scale = box.height() / (1 + wordmarkStroke);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.left(), box.top() + scale * wordmarkStroke / 2);
    painter.scale(scale, scale);
    QPen pen = painter.pen();
    pen.setWidthF(wordmarkStroke);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.restore();
    return units * scale;
}

QImage drawMainBackground(const QSize &size)
{
    QImage img(size, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal w = size.width();
    const qreal h = size.height();

    QLinearGradient base(0, 0, w, h);
    base.setColorAt(0, QColor(0xe4, 0xeb, 0xf3));
    base.setColorAt(0.55, QColor(0xf4, 0xf7, 0xfa));
    base.setColorAt(1, QColor(0xd9, 0xe3, 0xee));
    p.fillRect(img.rect(), base);

    drawHatch(p, size, QColor(0x5a, 0x74, 0x94, 13), 14);

    // Two soft light pools give the flat gradient some depth.
    for (const auto &[centre, radius, alpha] :
         {std::tuple{QPointF(w * 0.12, h * 0.1), h * 0.7, 70},
          std::tuple{QPointF(w * 0.92, h * 0.95), h * 0.8, 55}}) {
        QRadialGradient pool(centre, radius);
        pool.setColorAt(0, QColor(255, 255, 255, alpha));
        pool.setColorAt(1, QColor(255, 255, 255, 0));
        p.fillRect(img.rect(), pool);
    }
    p.setPen(QPen(QColor(0x4a, 0x68, 0x8c, 26), h * 0.004));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(w * 0.86, h * 0.88), h * 0.42, h * 0.42);
    p.drawEllipse(QPointF(w * 0.86, h * 0.88), h * 0.3, h * 0.3);

    // The name as a watermark, centred a little above the middle.
    const qreal markHeight = h * 0.075;
    const qreal markWidth = wordmarkWidth(markHeight);
    const QRectF markBox((w - markWidth) / 2, h * 0.42 - markHeight / 2, markWidth, markHeight);
    p.setPen(QPen(QColor(0x3d, 0x58, 0x7a, 120)));
    drawWordmark(p, markBox);

    QLinearGradient rule(markBox.left(), 0, markBox.right(), 0);
    rule.setColorAt(0, QColor(0x3d, 0x58, 0x7a, 0));
    rule.setColorAt(0.5, QColor(0x3d, 0x58, 0x7a, 90));
    rule.setColorAt(1, QColor(0x3d, 0x58, 0x7a, 0));
    p.fillRect(QRectF(markBox.left(), markBox.bottom() + markHeight * 0.45, markBox.width(),
                      qMax<qreal>(1, h * 0.002)),
               rule);
    return img;
}

QImage drawEmblem(const QSize &size)
{
    QImage img(size, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal w = size.width();
    const qreal h = size.height();
    QLinearGradient fill(0, 0, w, h);
    fill.setColorAt(0, QColor(0x24, 0x44, 0x70));
    fill.setColorAt(1, QColor(0x4a, 0x78, 0xb0));
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(QRectF(0, 0, w, h), w * 0.19, h * 0.19);
    // The first letter of the name alone makes the emblem; the clip ends
    // before the second letter's stem.
    const QRectF letter(w * 0.24, h * 0.24, w, h * 0.5);
    p.setClipRect(QRectF(w * 0.2, h * 0.2, w * 0.6, h * 0.62));
    p.setPen(QPen(Qt::white));
    drawWordmark(p, letter);
    return img;
}

QImage drawLoginBanner(const QSize &size)
{
    QImage img(size, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal w = size.width();
    const qreal h = size.height();

    QLinearGradient base(0, 0, w, h);
    base.setColorAt(0, QColor(0x24, 0x44, 0x70));
    base.setColorAt(1, QColor(0x4a, 0x78, 0xb0));
    p.fillRect(img.rect(), base);
    drawHatch(p, size, QColor(255, 255, 255, 14), 10);

    p.setPen(QPen(QColor(255, 255, 255, 40), 1.5));
    p.drawEllipse(QPointF(w * 0.93, h * 0.2), h * 0.9, h * 0.9);
    p.drawEllipse(QPointF(w * 0.93, h * 0.2), h * 0.62, h * 0.62);

    const qreal markHeight = h * 0.28;
    p.setPen(QPen(QColor(255, 255, 255, 240)));
    drawWordmark(p, QRectF(26, h * 0.24, w, markHeight));

    QFont font;
    font.setPixelSize(qRound(h * 0.15));
    font.setLetterSpacing(QFont::AbsoluteSpacing, 2);
    p.setFont(font);
    p.setPen(QColor(255, 255, 255, 200));
    p.drawText(QRectF(27, h * 0.62, w - 40, h * 0.3), Qt::AlignLeft | Qt::AlignTop,
               QStringLiteral("物业报表与数据导出"));
    return img;
}

} // namespace quorvale
