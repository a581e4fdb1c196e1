#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>

class QPainter;

namespace quorvale {

// Draws the main window's background bitmap that ships as MDI.BMP.
QImage drawMainBackground(const QSize &size);

// The square emblem of the About window and the status bar.
QImage drawEmblem(const QSize &size);

// The login window's banner in the same style.
QImage drawLoginBanner(const QSize &size);

// The product name as drawn letters, filling the height of the box from its
// left edge; needs no font, so the admin tool can draw it without a display.
// Returns the width used.
qreal drawWordmark(QPainter &painter, const QRectF &box);
// The width the product name takes at a height.
qreal wordmarkWidth(qreal height);

} // namespace quorvale
