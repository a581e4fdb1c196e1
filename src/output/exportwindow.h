#pragma once

#include <QDialog>
#include <QString>

namespace quorvale {

class FlexGrid;

// The column-choosing export dialog. Two variants of one design exist:
// frmToExcel for the customer reports and frmToExcelnew for the finance
// reports; each is one shared instance for the session.
class ExportWindow : public QDialog {
    Q_OBJECT
public:
    enum class Variant { Customer, Finance };

    // The session's instance of the variant, created on first use.
    static ExportWindow *shared(Variant variant);

    Variant variant() const { return m_variant; }

    // The free, invisible tag text the report windows store before Config.
    void setTagText(const QString &text) { m_tagText = text; }
    QString tagText() const { return m_tagText; }

    void Config(FlexGrid *grid, const QString &templateName, const QString &title);
    bool To_Execl(FlexGrid *grid, const QString &title, const QString &templateName);
    // Modeless show, brought to the front.
    void Show();

    FlexGrid *sourceGrid() const { return m_source; }

protected:
    explicit ExportWindow(Variant variant, QWidget *parent = nullptr);

private:
    Variant m_variant;
    QString m_tagText;
    FlexGrid *m_source = nullptr;
    QString m_templateName;
    QString m_title;
};

} // namespace quorvale
