#include "ui/keyboard.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <algorithm>

namespace quorvale {

namespace {

bool takesTab(const QWidget *w)
{
    return (w->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && !w->isHidden();
}

void collectWidget(QWidget *w, QList<QWidget *> &out);

// The items of a layout in its own order; a grid's row by row.
void collectLayout(QLayout *layout, QList<QWidget *> &out, QList<QWidget *> &placed)
{
    QList<QLayoutItem *> items;
    for (int i = 0; i < layout->count(); ++i)
        items << layout->itemAt(i);
    if (auto *grid = qobject_cast<QGridLayout *>(layout)) {
        const auto cellOf = [grid](QLayoutItem *item) {
            int row = 0, col = 0, rowSpan = 0, colSpan = 0;
            grid->getItemPosition(grid->indexOf(item), &row, &col, &rowSpan, &colSpan);
            return std::make_pair(row, col);
        };
        std::stable_sort(items.begin(), items.end(), [&](QLayoutItem *a, QLayoutItem *b) {
            return cellOf(a) < cellOf(b);
        });
    }
    for (QLayoutItem *item : items) {
        if (QWidget *w = item->widget()) {
            placed << w;
            collectWidget(w, out);
        } else if (QLayout *inner = item->layout()) {
            collectLayout(inner, out, placed);
        }
    }
}

void collectChildren(QWidget *parent, QList<QWidget *> &out)
{
    QList<QWidget *> placed;
    if (parent->layout())
        collectLayout(parent->layout(), out, placed);
    // Widgets placed by hand (or outside the layout), as the eye reads them.
    QList<QWidget *> loose;
    for (QWidget *child : parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        if (!child->isWindow() && !placed.contains(child))
            loose << child;
    std::stable_sort(loose.begin(), loose.end(), [](const QWidget *a, const QWidget *b) {
        return std::make_pair(a->y(), a->x()) < std::make_pair(b->y(), b->x());
    });
    for (QWidget *child : loose)
        collectWidget(child, out);
}

void collectWidget(QWidget *w, QList<QWidget *> &out)
{
    if (w->isHidden())
        return;
    // A control that takes focus is one stop, whatever it is made of.
    if (takesTab(w)) {
        out << w;
        return;
    }
    collectChildren(w, out);
}

} // namespace

void setTabOrderAsLaidOut(QWidget *root)
{
    QList<QWidget *> order;
    collectChildren(root, order);
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

namespace {

// Enter on the button it watches clicks it. (An auto-default button would
// take Enter too, but in a dialog it also takes Enter typed into a box.)
class EnterClicks : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
                key->modifiers() == Qt::NoModifier) {
                static_cast<QAbstractButton *>(watched)->click();
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void enterPressesButtons(QWidget *root)
{
    auto *filter = new EnterClicks(root);
    for (QAbstractButton *button : root->findChildren<QAbstractButton *>())
        if (qobject_cast<QPushButton *>(button) || qobject_cast<QToolButton *>(button))
            button->installEventFilter(filter);
}

} // namespace quorvale
