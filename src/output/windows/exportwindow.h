#pragma once

#include "output/exportoptions.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

#include <QDialog>
#include <QPointer>
#include <QString>
#include <array>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStatusBar;
class QToolBar;

namespace quorvale {

// The column-choosing export dialog. Two variants of one design exist:
// frmToExcel for the customer reports and frmToExcelnew for the finance
// reports; each is one shared instance for the session, unloaded when it
// closes and created afresh on the next use.
//
// Controls by objectName: Grid1 (the chooser), Text1_0 (file path),
// Text1_1 (title), Text1_2 (sheet name), Command1 (file dialog), Check1
// (open the workbook after the export), Toolbar1 with the actions "输出" and
// "退出", StatusBar1, Label1, Picture1.
class ExportWindow : public QDialog {
    Q_OBJECT
  public:
    using Variant = ExportVariant;

    // The session's instance of the variant, created on first use as a
    // window of mainWindow (centred on it), or of the screen without one.
    static ExportWindow *shared(Variant variant, DesktopPtr desktop, QWidget *mainWindow);

    Variant variant() const { return m_variant; }

    // The free, invisible tag text the report windows store before Config.
    void setTagText(const QString &text) { m_tagText = text; }
    QString tagText() const { return m_tagText; }

    void Config(FlexGrid *grid, const QString &templateName, const QString &title);
    // Writes the chosen columns; false with the error kept in
    // errorDescription() when anything failed.
    bool To_Execl(FlexGrid *grid, const QString &title, const QString &templateName);
    // Modeless show, brought to the front.
    void Show();

    FlexGrid *sourceGrid() const { return m_source; }
    FlexGrid *Grid1() const { return m_grid1; }
    QLineEdit *Text1(int index) const { return m_text1.at(std::size_t(index)); }
    QString errorDescription() const { return m_errorDescription; }
    // What the last successful export wrote otherwise than asked: another
    // file name, a text cut to Excel's cell limit.
    QStringList notes() const { return m_notes; }

  Q_SIGNALS:
    // Something the report window of `source` should say in its status bar
    // (the window itself closes after a successful export).
    void statusMessage(FlexGrid *source, const QString &text);

  protected:
    ExportWindow(Variant variant, DesktopPtr desktop, QWidget *parent = nullptr);
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void done(int result) override;

  private:
    void buildControls();
    void chooseFile();
    void exportClicked();
    void unload();
    // Runs an event handler under the windows' error trap.
    void trapped(const std::function<void()> &handler);

    Variant m_variant;
    DesktopPtr m_desktop;
    QString m_tagText;
    QPointer<FlexGrid> m_source;
    QString m_errorDescription;
    QStringList m_notes;
    bool m_centred = false;
    bool m_unloaded = false;

    FlexGrid *m_grid1 = nullptr;
    std::array<QLineEdit *, 3> m_text1{};
    QPushButton *m_command1 = nullptr;
    QCheckBox *m_check1 = nullptr;
    QToolBar *m_toolbar1 = nullptr;
    QStatusBar *m_statusBar1 = nullptr;
    QLabel *m_label1 = nullptr;
    QWidget *m_picture1 = nullptr;
};

} // namespace quorvale
