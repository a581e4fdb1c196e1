#include "session/mdibackground.h"

namespace quorvale {

QImage drawMainBackground(const QSize &size)
{
    QImage img(size, QImage::Format_RGB32);
    img.fill(Qt::white);
    return img;
}

} // namespace quorvale
