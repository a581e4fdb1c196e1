#include "reports/windows/reportwindow.h"

#include "db/recordset.h"
#include "output/gridprint.h"
#include "output/windows/exportwindow.h"
#include "output/windows/pagesetup.h"
#include "output/windows/previewgrid.h"
#include "runtime/freedmemory.h"
#include "runtime/runtimeerror.h"
#include "runtime/vb.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"
#include "ui/keyboard.h"

#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <QCloseEvent>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStatusBar>
#include <cmath>

namespace quorvale {

namespace {

const QString kOfficeLabel = QStringLiteral("管理处");
const QStringList kCommandCaptions = {QStringLiteral("统计"), QStringLiteral("输出EXCEL"),
                                      QStringLiteral("退出"), QStringLiteral("打印")};
const QString kChooseOffice = QStringLiteral("请选择管理处！");
const QString kSystemNotice = QStringLiteral("系统提示");
const QString kStatTime = QStringLiteral("统计时间:");
const QString kUserPanel = QStringLiteral("操作员:");
const QString kPostPanel = QStringLiteral("部门/岗位:");
const QColor kHighlight(0xD0, 0xFF, 0xFD);
// Gaps between the grid and the window's edge and the bottom strip, in twips.
constexpr int kGridRightGap = 60;
constexpr int kGridBottomGap = 30;
constexpr qint64 kRepaintIntervalMs = 250;

void showTrappedError(const Desktop &desktop, int number, const QString &description)
{
    desktop.msgBox(
        QStringLiteral("错误号：%1\n错误描述：%2").arg(QString::number(number), description),
        vb::Information, description);
}

} // namespace

ReportWindow::ReportWindow(SessionPtr session, DesktopPtr desktop, ReportDefinition definition,
                           QWidget *parent)
    : QWidget(parent), m_session(std::move(session)), m_desktop(std::move(desktop)),
      m_definition(std::move(definition))
{
    setObjectName(m_definition.windowName);
    setWindowTitle(m_definition.caption);
    setAttribute(Qt::WA_DeleteOnClose);
    setFont(reportWindowFont(font()));
    buildControls();
    if (!m_definition.headerAtLoad)
        m_grid->setFormatString(m_definition.formatString);
    resize(sizeHint());
}

QSize ReportWindow::sizeHint() const
{
    return QSize(800, 500).expandedTo(minimumSizeHint());
}

QSize ReportWindow::minimumSizeHint() const
{
    // The strip whole, and a few rows of the grid above it.
    constexpr int kGridRows = 120;
    const QSize strip = m_picture1->minimumSizeHint();
    return {strip.width(), kGridRows + strip.height() + m_statusBar->sizeHint().height()};
}

ReportWindow::~ReportWindow()
{
    // The grid shows the window's table, so it goes first.
    delete m_grid;
    // The rows go with the table, after this body; hand them back once they
    // are freed, so the program shrinks when a large report is closed.
    QTimer::singleShot(0, qApp, [] { returnFreedMemory(); });
}

void ReportWindow::buildControls()
{
    m_grid = new FlexGrid(m_table, this);
    m_grid->setObjectName(m_definition.gridName);
    m_grid->move(0, 0);
    connect(m_grid, &FlexGrid::Click, this, [this] { trapped([this] { HighlightGridRow(); }); });

    m_picture1 = new QFrame(this);
    m_picture1->setObjectName(QStringLiteral("Picture1"));
    m_picture1->setFrameShape(QFrame::StyledPanel);
    auto *strip = new QHBoxLayout(m_picture1);
    strip->setContentsMargins(6, 4, 6, 4);
    m_label1 = new QLabel(kOfficeLabel, m_picture1);
    m_label1->setObjectName(QStringLiteral("Label1"));
    m_combo1 = new QComboBox(m_picture1);
    m_combo1->setObjectName(QStringLiteral("Combo1"));
    m_combo1->setMinimumContentsLength(14);
    m_combo1->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    strip->addWidget(m_label1);
    strip->addWidget(m_combo1);
    strip->addStretch(1);
    m_buttons = new QGridLayout;
    m_buttons->setSpacing(4);
    strip->addLayout(m_buttons);
    for (int i = 0; i < kCommandCaptions.size(); ++i) {
        auto *button = new QPushButton(kCommandCaptions[i], m_picture1);
        button->setObjectName(QStringLiteral("Command1"));
        button->setProperty("index", i);
        connect(button, &QPushButton::clicked, this, [this, i] { ReportCommand(i); });
        m_buttons->addWidget(button, 0, i);
        m_command1 << button;
    }
    m_picture1->installEventFilter(this);

    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("StatusBar1"));
    m_statusBar->setSizeGripEnabled(false);
    for (int panel = 1; panel <= 5; ++panel) {
        auto *label = new QLabel(m_statusBar);
        label->setObjectName(QStringLiteral("Panel%1").arg(panel));
        m_statusBar->addWidget(label);
        m_panels << label;
    }
    m_panels[0]->setText(kUserPanel);
    m_panels[2]->setText(kPostPanel);
    m_progressPanel = new QLabel(m_statusBar);
    m_progressPanel->setObjectName(QStringLiteral("ProgressPanel"));
    m_statusBar->addPermanentWidget(m_progressPanel);
}

QFrame *ReportWindow::picture2()
{
    if (!m_picture2) {
        m_picture2 = new QFrame(m_picture1);
        m_picture2->setObjectName(QStringLiteral("Picture2"));
        auto *strip = static_cast<QHBoxLayout *>(m_picture1->layout());
        strip->insertWidget(2, m_picture2);
        // The panel has two rows; the buttons take two as well, leaving the
        // panel room for its labels whole.
        for (int i = 0; i < m_command1.size(); ++i)
            m_buttons->addWidget(m_command1[i], i / 2, i % 2);
        layoutStrip();
    }
    return m_picture2;
}

QString ReportWindow::statusPanelText(int panel) const
{
    return panel >= 1 && panel <= m_panels.size() ? m_panels[panel - 1]->text() : QString();
}

QString ReportWindow::officeCode() const
{
    return officeCodeOf(m_combo1->currentText());
}

QString ReportWindow::officeName() const
{
    return officeNameOf(m_combo1->currentText());
}

void ReportWindow::trapped(const std::function<void()> &fn)
{
    try {
        fn();
    } catch (const RuntimeError &e) {
        showTrappedError(*m_desktop, e.number(), e.description());
    } catch (const std::exception &e) {
        showTrappedError(*m_desktop, 0, QString::fromUtf8(e.what()));
    }
}

void ReportWindow::load()
{
    LoadOfficeList();
}

void ReportWindow::LoadOfficeList()
{
    trapped([this] {
        fillStatusBar();
        setGridHeader();
        fillOfficeList();
    });
}

void ReportWindow::fillStatusBar()
{
    m_panels[1]->setText(QLatin1Char(' ') + m_session->CurUserName);
    m_panels[3]->setText(QLatin1Char(' ') + m_session->CurDeptName);
    m_panels[4]->setText(QLatin1Char(' ') + m_session->CurPostName);
}

void ReportWindow::setGridHeader()
{
    if (!m_definition.headerAtLoad)
        return;
    m_grid->setRows(1);
    m_grid->setFormatString(m_definition.formatString);
}

void ReportWindow::fillOfficeList()
{
    m_deptCode = m_session->CurDeptCode;
    m_officeStatement =
        officeStatement(m_definition.officeStyle, m_session->HasProjectAudit, m_deptCode);
    m_officeRecordset = std::make_unique<Recordset>();
    m_officeRecordset->Open(m_officeStatement, m_session->connection(), 0, 1, -1);
    m_combo1->clear();
    for (Recordset &rs = *m_officeRecordset; !rs.eof(); rs.MoveNext()) {
        const OfficeItem item = officeItemOf(rs);
        m_combo1->addItem(item.text, item.commercial);
    }
    // Nothing is chosen until the user picks an office.
    m_combo1->setCurrentIndex(-1);
}

void ReportWindow::HighlightGridRow()
{
    FlexGrid &grid = *m_grid;
    const int clicked = grid.Row();
    // A click on the heading leaves the current row in the heading; nothing to paint.
    if (grid.Rows() == 1 || clicked < grid.FixedRows())
        return;
    grid.setRedraw(false);
    // A row dropped by a later compute has nothing left to repaint.
    if (m_highlightedRow != 0 && m_highlightedRow < grid.Rows()) {
        const QColor window = grid.palette().color(QPalette::Base);
        grid.setRow(m_highlightedRow);
        for (int c = 1; c < grid.Cols(); ++c)
            grid.setCellBackColor(m_highlightedRow, c, window);
    }
    m_highlightedRow = clicked;
    grid.setRow(clicked);
    for (int c = 1; c < grid.Cols(); ++c)
        grid.setCellBackColor(clicked, c, kHighlight);
    grid.setRedraw(true);
}

void ReportWindow::LayoutReportGrid()
{
    const int width = this->width() - m_grid->x() - m_grid->twipsToPixelsX(kGridRightGap);
    const int height = m_picture1->y() - m_grid->y() - m_grid->twipsToPixelsX(kGridBottomGap);
    // A window made too small leaves the grid as it was.
    if (width <= 0 || height <= 0)
        return;
    m_grid->resize(width, height);
}

void ReportWindow::layoutStrip()
{
    const int statusHeight = m_statusBar->sizeHint().height();
    const int stripHeight = m_picture1->sizeHint().height();
    m_statusBar->setGeometry(0, height() - statusHeight, width(), statusHeight);
    m_picture1->setGeometry(0, height() - statusHeight - stripHeight, width(), stripHeight);
}

void ReportWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutStrip();
}

bool ReportWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_picture1 && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        LayoutReportGrid();
    return QWidget::eventFilter(watched, event);
}

QMdiSubWindow *ReportWindow::mdiSubWindow() const
{
    return qobject_cast<QMdiSubWindow *>(parentWidget());
}

void ReportWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_shownOnce) {
        m_shownOnce = true;
        // Never so small that a label of the strip is cut.
        setMinimumSize(minimumSizeHint());
        setTabOrderAsLaidOut(this);
        enterPressesButtons(this);
    }
    QMdiSubWindow *sub = mdiSubWindow();
    if (!sub || m_watchingMdi)
        return;
    if (QMdiArea *area = sub->mdiArea()) {
        m_watchingMdi = true;
        connect(area, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *active) {
            if (active && active == mdiSubWindow())
                maximiseInMdi();
        });
        if (area->activeSubWindow() == sub)
            maximiseInMdi();
    }
}

void ReportWindow::maximiseInMdi()
{
    if (QMdiSubWindow *sub = mdiSubWindow(); sub && !sub->isMaximized())
        sub->showMaximized();
}

void ReportWindow::closeEvent(QCloseEvent *event)
{
    // The fill lets paint events through between chunks; the window must
    // outlive the compute that is writing into its grid.
    if (m_busy) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

void ReportWindow::ReportCommand(int index)
{
    if (m_busy)
        return;
    trapped([this, index] {
        if (index == Close) {
            close();
            return;
        }
        if (m_combo1->currentText().isEmpty()) {
            m_desktop->msgBox(kChooseOffice, vb::Information, kSystemNotice);
            m_combo1->setFocus();
            return;
        }
        switch (index) {
        case Compute:
            // Commercial offices are left out on purpose, without a word.
            if (m_combo1->currentData().toInt() == 0)
                runCompute();
            break;
        case Export:
            exportGrid();
            break;
        case Print:
            printGrid();
            break;
        default:
            break;
        }
    });
}

bool ReportWindow::prepareReport(ReportParams &)
{
    return true;
}

QPair<QDate, QDate> ReportWindow::printDateRange() const
{
    const QDate today = m_desktop->date();
    return {today, today};
}

void ReportWindow::setBusy(bool busy)
{
    if (busy == m_busy)
        return;
    m_busy = busy;
    m_picture1->setEnabled(!busy);
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void ReportWindow::runCompute()
{
    if (m_combo1->currentIndex() == -1)
        return;
    ReportParams params;
    params.officeCode = officeCode();
    params.officeName = officeName();
    if (!prepareReport(params))
        return;

    // The pointer is restored even when the compute fails, before the error box.
    struct BusyScope {
        ReportWindow *w;
        explicit BusyScope(ReportWindow *window) : w(window) { w->setBusy(true); }
        ~BusyScope() { w->setBusy(false); }
    } busy(this);

    m_progressPanel->clear();
    QElapsedTimer sinceRepaint;
    sinceRepaint.start();
    TableFill fill(m_table, m_grid->textWidthFn(), {}, m_chunkRows);
    fill.setCursor({m_grid->Row(), m_grid->Redraw()});
    // The grid hears of the rows as they come, and of the fill's cursor.
    const auto showFill = [this, &fill] {
        m_grid->setRedraw(fill.cursor().drawing);
        m_grid->tableChanged(fill.firstChangedRow());
        m_grid->setRow(fill.cursor().currentRow);
        m_progressPanel->setText(QStringLiteral("共 %1 行").arg(m_table.rows() - 1));
    };
    fill.setProgress([this, &fill, &sinceRepaint](int rows) {
        m_grid->setRedraw(fill.cursor().drawing);
        m_grid->tableChanged(fill.firstChangedRow());
        m_progressPanel->setText(QStringLiteral("已读取 %1 行").arg(rows));
        Q_EMIT rowsFilled(rows);
        // Repainting costs more than a chunk; a few times a second keeps
        // the window alive without slowing the fill.
        if (sinceRepaint.elapsed() >= kRepaintIntervalMs) {
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            sinceRepaint.restart();
        }
    });
    try {
        m_definition.compute(m_session->connection(), params, fill);
    } catch (...) {
        showFill();
        throw;
    }
    showFill();
}

void ReportWindow::exportGrid()
{
    ExportWindow *window = ExportWindow::shared(m_definition.exportVariant, m_desktop,
                                                qobject_cast<QMainWindow *>(this->window()));
    window->setTagText(kStatTime + vbrt::formatChineseDate(m_desktop->date()));
    const QString title =
        QLatin1Char('(') + officeName() + QLatin1Char(')') + m_definition.exportTitleSuffix;
    window->Config(m_grid, m_definition.exportTemplate, title);
    connect(window, &ExportWindow::statusMessage, this, &ReportWindow::showExportMessage,
            Qt::UniqueConnection);
    window->Show();
}

void ReportWindow::printGrid()
{
    const auto [from, to] = printDateRange();
    // Every window prints the same title, whatever its report.
    const PrintTitles titles = reportPrintTitles(officeName(), from, to, m_desktop->date());
    const PrintProgress progress = [this](int page, int pageCount) {
        showPrintProgress(page, pageCount);
    };
    m_sinceRepaint.start();
    // A print that did not happen leaves no "已打印" line behind.
    const QString before = m_progressPanel->text();
    PageSetup &setup = PageSetup::of(this);
    const PreviewResult result = PreviewGrid(this, *m_desktop, setup.layout(), m_table,
                                             m_grid->printLook(), titles, false, 0, progress);
    if (result != PreviewResult::Printed)
        m_progressPanel->setText(before);
    // Yes to "是否要修改打印设置？": here is where the paper is changed.
    if (result == PreviewResult::NotOpened)
        setup.choose(this);
}

void ReportWindow::showExportMessage(FlexGrid *source, const QString &text)
{
    if (source == m_grid)
        m_progressPanel->setText(text);
}

void ReportWindow::showPrintProgress(int page, int pageCount)
{
    m_progressPanel->setText(QStringLiteral("已打印 %1/%2 页").arg(page).arg(pageCount));
    Q_EMIT pagePrinted(page, pageCount);
    // A few repaints a second keep the window alive without slowing the print.
    if (page == pageCount || m_sinceRepaint.elapsed() >= kRepaintIntervalMs) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_sinceRepaint.restart();
    }
}

} // namespace quorvale
