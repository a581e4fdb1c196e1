#pragma once

#include "reports/reportdefinition.h"
#include "session/session.h"
#include "ui/desktop.h"

#include <QDate>
#include <QElapsedTimer>
#include <QPair>
#include <QVector>
#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;
class QFrame;
class QGridLayout;
class QLabel;
class QMdiSubWindow;
class QPushButton;
class QStatusBar;

namespace quorvale {

class FlexGrid;
class Recordset;
struct PrintTitles;

// The skeleton every report window shares: the bottom strip Picture1 with
// the office selector (Label1, Combo1) and the Command1 buttons ("统计",
// "输出EXCEL", "退出", "打印"), the grid above it, and StatusBar1 naming the
// signed-in user. A report window is a ReportDefinition plus, for the
// finance windows, the controls they put into Picture2 and the hooks below.
// The window's objectName is the definition's windowName.
//
// Lifetime: construct, then load() once (virtual, so not from the
// constructor); the main window's factory does both.
class ReportWindow : public QWidget {
    Q_OBJECT
  public:
    enum Command { Compute = 0, Export = 1, Close = 2, Print = 3 };

    ReportWindow(SessionPtr session, DesktopPtr desktop, ReportDefinition definition,
                 QWidget *parent = nullptr);
    ~ReportWindow() override;

    // The size it was designed at, and its normal size in the main window.
    QSize sizeHint() const override;
    // The bottom strip with every label whole.
    QSize minimumSizeHint() const override;

    const ReportDefinition &definition() const { return m_definition; }
    const SessionPtr &session() const { return m_session; }
    const Desktop &desktop() const { return *m_desktop; }

    // The window's load: LoadOfficeList under the error trap. Finance windows
    // override it to fill their own controls too (use the protected steps).
    virtual void load();
    // Status bar, grid header and office list; errors end it through the trap.
    void LoadOfficeList();
    // The grid's click: paints the clicked row pale mint, the previous one
    // back in the window colour; column 0 is left alone.
    void HighlightGridRow();
    // Picture1's resize: the grid fills the window above the strip.
    void LayoutReportGrid();
    // The Command1 buttons' click.
    void ReportCommand(int index);

    FlexGrid *grid() const { return m_grid; }
    // What the grid shows, filled by the compute.
    const ReportTable &table() const { return m_table; }
    QComboBox *combo1() const { return m_combo1; }
    QPushButton *command1(int index) const { return m_command1.value(index); }
    QFrame *picture1() const { return m_picture1; }
    // The finance windows' inner panel in the bottom strip, between the
    // office selector and the buttons; created on first use.
    QFrame *picture2();
    QStatusBar *statusBar1() const { return m_statusBar; }
    QString statusPanelText(int panel) const; // panels 1 to 5
    int highlightedRow() const { return m_highlightedRow; }
    bool isBusy() const { return m_busy; }

    // The office of Combo1's current text.
    QString officeCode() const;
    QString officeName() const;

    // Rows handed to the grid at a time (tests use small chunks).
    void setFillChunkRows(int rows) { m_chunkRows = rows; }

  Q_SIGNALS:
    // After each chunk of rows reached the grid during a compute.
    void rowsFilled(int rows);
    // After each page of a print, once the status bar says so.
    void pagePrinted(int page, int pageCount);

  protected:
    // Load steps, for windows that load more than the office list.
    void fillStatusBar();
    void setGridHeader();
    void fillOfficeList();

    // Checks and completes the parameters before the compute runs (office
    // already filled in). Return false to stop; show any message yourself.
    virtual bool prepareReport(ReportParams &params);
    // The print branch's date range; the windows without dates print today.
    virtual QPair<QDate, QDate> printDateRange() const;

    // Runs fn under the window's error trap: a RuntimeError shows an
    // information box titled with its description; the window stays usable.
    void trapped(const std::function<void()> &fn);

    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void buildControls();
    void layoutStrip();
    void runCompute();
    void exportGrid();
    void printGrid();
    void showPrintProgress(int page, int pageCount);
    void showExportMessage(FlexGrid *source, const QString &text);
    void setBusy(bool busy);
    void maximiseInMdi();
    QMdiSubWindow *mdiSubWindow() const;

    SessionPtr m_session;
    DesktopPtr m_desktop;
    ReportDefinition m_definition;
    ReportTable m_table;
    FlexGrid *m_grid = nullptr;
    QFrame *m_picture1 = nullptr;
    QFrame *m_picture2 = nullptr;
    QLabel *m_label1 = nullptr;
    QComboBox *m_combo1 = nullptr;
    QVector<QPushButton *> m_command1;
    QGridLayout *m_buttons = nullptr;
    QStatusBar *m_statusBar = nullptr;
    QVector<QLabel *> m_panels;
    QLabel *m_progressPanel = nullptr;
    QElapsedTimer m_sinceRepaint;

    QString m_deptCode;
    QString m_officeStatement;
    std::unique_ptr<Recordset> m_officeRecordset;
    int m_highlightedRow = 0;
    int m_chunkRows = TableFill::DefaultChunkRows;
    bool m_busy = false;
    bool m_shownOnce = false;
    bool m_watchingMdi = false;
};

} // namespace quorvale
