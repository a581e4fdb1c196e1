#pragma once

#include <QProxyStyle>

namespace quorvale {

// The style of a child window's frame in the main window: a minimized child
// is wide enough for its whole caption, so that several minimized reports
// can be told apart (the platform's fixed width shows each as "…").
class MdiCaptionStyle : public QProxyStyle {
  public:
    MdiCaptionStyle() = default;

    int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
                    const QWidget *widget = nullptr) const override;
};

} // namespace quorvale
