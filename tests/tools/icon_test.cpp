#include "support/adminprocess.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

// Pixels that differ by more than antialiasing does, in any channel.
int differingPixels(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int diff =
                std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                          std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
            count += diff > 16 ? 1 : 0;
        }
    return count;
}

} // namespace

// The desktop shows the committed SVG where it scales and the PNGs the build
// draws with make-icon at fixed sizes: both must be the windows' emblem.
TEST(Icon, TheSvgAndTheDrawnPngsAreOnePicture)
{
    QSvgRenderer svg(qEnvironmentVariable("QUORVALE_SOURCE_DIR") + "/data/quorvale.svg");
    ASSERT_TRUE(svg.isValid());
    QTemporaryDir dir;
    for (int size : {16, 48, 256}) {
        SCOPED_TRACE(size);
        const QString path = dir.filePath(QString::number(size) + ".png");
        const auto run =
            quorvale::testing::runAdmin({"make-icon", "--size", QString::number(size), path});
        ASSERT_EQ(run.status, 0) << run.err.toStdString();
        const QImage drawn = QImage(path).convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(drawn.size(), QSize(size, size));
        QImage rendered(size, size, QImage::Format_ARGB32);
        rendered.fill(Qt::transparent);
        QPainter painter(&rendered);
        svg.render(&painter);
        painter.end();
        // Antialiased outlines may differ a little, along their length only.
        EXPECT_LE(differingPixels(drawn, rendered), 2 * size);
    }
}
