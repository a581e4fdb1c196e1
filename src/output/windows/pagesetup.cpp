#include "output/windows/pagesetup.h"

#include "runtime/printer.h"

#include <QPageSetupDialog>
#include <QPrinter>
#include <QWidget>

namespace quorvale {

namespace {

const char *const kObjectName = "PageSetup";

} // namespace

PageSetup::PageSetup(QObject *owner) : QObject(owner), m_layout(Printer::defaultPageLayout())
{
    setObjectName(QString::fromLatin1(kObjectName));
}

PageSetup &PageSetup::of(QWidget *window)
{
    QWidget *owner = window->window();
    if (auto *setup = owner->findChild<PageSetup *>(QString::fromLatin1(kObjectName),
                                                    Qt::FindDirectChildrenOnly))
        return *setup;
    return *new PageSetup(owner);
}

bool PageSetup::choose(QWidget *parent)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(m_layout);
    QPageSetupDialog dialog(&printer, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    m_layout = printer.pageLayout();
    return true;
}

} // namespace quorvale
