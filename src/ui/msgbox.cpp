#include "ui/msgbox.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>

namespace quorvale {

namespace {
QMessageBox::Icon iconFor(int style)
{
    switch (style & 0x70) {
    case vb::Critical: return QMessageBox::Critical;
    case vb::Question: return QMessageBox::Question;
    case vb::Exclamation: return QMessageBox::Warning;
    case vb::Information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}
// A short prompt makes a box narrower than its title, which the window
// manager then cuts ("qu…ale"): the box is made as wide as the title in a
// bold caption, with room for the frame's icon and three buttons.
void keepTitleWhole(QMessageBox &box)
{
    constexpr int kFrameDecorations = 120;
    QFont caption = box.font();
    caption.setBold(true);
    const int width = QFontMetrics(caption).horizontalAdvance(box.windowTitle()) + kFrameDecorations;
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout()))
        grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Fixed, QSizePolicy::Minimum),
                      grid->rowCount(), 0, 1, grid->columnCount());
}

} // namespace

int showMsgBox(const MsgBoxCall &call)
{
    const int style = call.style;
    QMessageBox box(iconFor(style), call.title, call.prompt, QMessageBox::NoButton,
                    QApplication::activeWindow());
    switch (style & 0x7) {
    case 1: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case 3: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
    case vb::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    default: box.setStandardButtons(QMessageBox::Ok); break;
    }
    keepTitleWhole(box);
    switch (box.exec()) {
    case QMessageBox::Yes: return vb::Yes;
    case QMessageBox::No: return vb::No;
    case QMessageBox::Cancel: return vb::Cancel;
    default: return vb::OK;
    }
}

} // namespace quorvale
