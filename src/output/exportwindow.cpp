#include "output/exportwindow.h"

namespace quorvale {

// Placeholder until the export dialog lands: keeps what the report windows hand over.
ExportWindow::ExportWindow(Variant variant, QWidget *parent) : QDialog(parent), m_variant(variant)
{
    setObjectName(variant == Variant::Customer ? QStringLiteral("frmToExcel")
                                               : QStringLiteral("frmToExcelnew"));
}

ExportWindow *ExportWindow::shared(Variant variant)
{
    static ExportWindow *instances[2] = {nullptr, nullptr};
    ExportWindow *&w = instances[variant == Variant::Customer ? 0 : 1];
    if (!w)
        w = new ExportWindow(variant);
    return w;
}

void ExportWindow::Config(FlexGrid *grid, const QString &templateName, const QString &title)
{
    m_source = grid;
    m_templateName = templateName;
    m_title = title;
}

bool ExportWindow::To_Execl(FlexGrid *, const QString &, const QString &) { return false; }

void ExportWindow::Show()
{
    show();
    raise();
}

} // namespace quorvale
