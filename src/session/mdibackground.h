#pragma once

#include <QImage>
#include <QSize>

namespace quorvale {

// Draws the main window's background bitmap that ships as MDI.BMP.
QImage drawMainBackground(const QSize &size);

} // namespace quorvale
