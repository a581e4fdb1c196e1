#include "session/mdibackground.h"

#include <QColor>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {
// Pixels drawn in the letter's white rather than the blue ground.
int lightPixels(const QImage &image, int fromX, int toX)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = fromX; x < toX; ++x)
            count += QColor(image.pixel(x, y)).lightness() > 160 ? 1 : 0;
    return count;
}
} // namespace

// The emblem (window icon, About window, the desktop icon) is the letter Q
// alone: nothing of the rest of the name may show beside it.
TEST(Emblem, ShowsTheFirstLetterAlone)
{
    for (int size : {16, 48, 64, 256}) {
        SCOPED_TRACE(size);
        const QImage emblem = drawEmblem(QSize(size, size));
        EXPECT_GT(lightPixels(emblem, size / 4, size * 3 / 4), 0);
        EXPECT_EQ(lightPixels(emblem, size * 3 / 4, size), 0);
    }
}
