#include "ui/centerinmain.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace quorvale {

void CenterInMain(QWidget *window)
{
    if (!window)
        return;
    QMainWindow *main = nullptr;
    for (QWidget *w = window->parentWidget(); w && !main; w = w->parentWidget())
        main = qobject_cast<QMainWindow *>(w);
    auto *area = main ? qobject_cast<QMdiArea *>(main->centralWidget()) : nullptr;
    if (!area)
        return;
    const QSize client = area->viewport()->size();
    if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget())) {
        sub->move((client.width() - sub->width()) / 2, (client.height() - sub->height()) / 2);
        return;
    }
    const QPoint origin = area->viewport()->mapToGlobal(QPoint(0, 0));
    const QSize size = window->frameGeometry().size();
    window->move(origin + QPoint((client.width() - size.width()) / 2,
                                 (client.height() - size.height()) / 2));
}

} // namespace quorvale
