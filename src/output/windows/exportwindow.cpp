#include "output/windows/exportwindow.h"

#include "output/gridexport.h"
#include "output/windows/columnchooser.h"
#include "output/windows/desktopopen.h"
#include "output/windows/saveasfolder.h"
#include "runtime/programinfo.h"
#include "runtime/runtimeerror.h"
#include "ui/centerinmain.h"
#include "ui/chinesefilelist.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"
#include "ui/keyboard.h"
#include "ui/waitpointer.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace quorvale {

namespace {

const QString kExportKey = QStringLiteral("输出");
const QString kCloseKey = QStringLiteral("退出");
const QString kNeedTitle = QStringLiteral("请输入标题内容");
const QString kNeedFile = QStringLiteral("请确定输出的文件名");
const QString kExportFailed = QStringLiteral("输出到Execl失败: ");
const QString kNoColumnChosen = QStringLiteral("没有选中要输出的列");
const QString kNoSpreadsheetProgram =
    QStringLiteral("已输出到 %1，但本机没有可以打开Excel工作簿的程序");
// The misspellings are the window's own; *.xlsx is listed so workbooks can be picked.
const QString kFileFilter = QStringLiteral("Excel Flie *.xls (*.xls *.xlsx);;All flie *.* (*)");

// The two windows of one design, as they were named.
QString windowName(ExportWindow::Variant variant)
{
    return variant == ExportWindow::Variant::Customer ? QStringLiteral("frmToExcel")
                                                      : QStringLiteral("frmToExcelnew");
}

[[noreturn]] void throwNoSourceGrid()
{
    throw RuntimeError(ErrorNumber::ObjectNotSet,
                       QStringLiteral("Object variable or With block variable not set"));
}

} // namespace

ExportWindow::ExportWindow(Variant variant, DesktopPtr desktop, QWidget *parent)
    : QDialog(parent), m_variant(variant), m_desktop(std::move(desktop))
{
    setObjectName(windowName(variant));
    setWindowTitle(QStringLiteral("输出EXCEL"));
    setModal(false);
    buildControls();
    resize(640, 300);
}

ExportWindow *ExportWindow::shared(Variant variant, DesktopPtr desktop, QWidget *mainWindow)
{
    // The open one is found where it lives, among the main window's children
    // (or the program's windows without one): nothing else keeps it.
    const QString name = windowName(variant);
    const QList<QWidget *> candidates =
        mainWindow ? mainWindow->findChildren<QWidget *>(name, Qt::FindDirectChildrenOnly)
                   : QApplication::topLevelWidgets();
    for (QWidget *candidate : candidates) {
        auto *w = qobject_cast<ExportWindow *>(candidate);
        if (w && w->objectName() == name && !w->m_unloaded && w->parentWidget() == mainWindow)
            return w;
    }
    return new ExportWindow(variant, std::move(desktop), mainWindow);
}

void ExportWindow::buildControls()
{
    m_toolbar1 = new QToolBar(this);
    m_toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    m_toolbar1->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const QString &key : {kExportKey, kCloseKey}) {
        QAction *button = m_toolbar1->addAction(key);
        button->setObjectName(key);
        button->setData(key);
    }
    connect(m_toolbar1, &QToolBar::actionTriggered, this, [this](QAction *button) {
        if (button->data().toString() == kExportKey)
            trapped([this] { exportClicked(); });
        else if (button->data().toString() == kCloseKey)
            close();
    });

    m_grid1 = new FlexGrid(this);
    m_grid1->setObjectName(QStringLiteral("Grid1"));
    m_grid1->setFixedCols(0);
    m_grid1->setRows(2);
    connect(m_grid1, &FlexGrid::Click, this,
            [this] { trapped([this] { columnchooser::mark(*m_grid1, m_grid1->Col()); }); });
    connect(m_grid1, &FlexGrid::DblClick, this,
            [this] { trapped([this] { columnchooser::unmark(*m_grid1, m_grid1->Col()); }); });

    m_picture1 = new QWidget(this);
    m_picture1->setObjectName(QStringLiteral("Picture1"));
    auto *fields = new QGridLayout(m_picture1);
    m_label1 = new QLabel(QStringLiteral("单击列选中，双击列取消"), m_picture1);
    m_label1->setObjectName(QStringLiteral("Label1"));
    fields->addWidget(m_label1, 0, 0, 1, 3);
    const QString placeholders[3] = {QStringLiteral("文件名"), QStringLiteral("标题"),
                                     QStringLiteral("工作表")};
    for (int i = 0; i < 3; ++i) {
        m_text1[std::size_t(i)] = new QLineEdit(m_picture1);
        m_text1[std::size_t(i)]->setObjectName(QStringLiteral("Text1_%1").arg(i));
        m_text1[std::size_t(i)]->setPlaceholderText(placeholders[i]);
    }
    m_command1 = new QPushButton(QStringLiteral("..."), m_picture1);
    m_command1->setObjectName(QStringLiteral("Command1"));
    m_command1->setAutoDefault(false);
    connect(m_command1, &QPushButton::clicked, this, [this] { trapped([this] { chooseFile(); }); });
    m_check1 = new QCheckBox(QStringLiteral("显示Excel"), m_picture1);
    m_check1->setObjectName(QStringLiteral("Check1"));
    fields->addWidget(m_text1[0], 1, 0, 1, 2);
    fields->addWidget(m_command1, 1, 2);
    fields->addWidget(m_text1[1], 2, 0);
    fields->addWidget(m_text1[2], 2, 1);
    fields->addWidget(m_check1, 2, 2);

    m_statusBar1 = new QStatusBar(this);
    m_statusBar1->setObjectName(QStringLiteral("StatusBar1"));
    m_statusBar1->setSizeGripEnabled(false);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolbar1);
    layout->addWidget(m_grid1, 1);
    layout->addWidget(m_picture1);
    layout->addWidget(m_statusBar1);
}

void ExportWindow::Config(FlexGrid *grid, const QString &templateName, const QString &title)
{
    m_source = grid;
    if (!grid)
        throwNoSourceGrid();
    std::optional<QFont> fitFont;
    if (m_variant == Variant::Customer)
        fitFont = font();
    columnchooser::configure(*m_grid1, grid->table(), fitFont);
    m_text1[1]->setText(title);
    m_text1[2]->setText(templateName);
}

bool ExportWindow::To_Execl(FlexGrid *grid, const QString &title, const QString &templateName)
{
    m_errorDescription.clear();
    m_notes.clear();
    const QString path = m_text1[0]->text();
    if (path.isEmpty()) {
        m_desktop->msgBox(kNeedFile, vb::OKOnly, exeName());
        return false;
    }
    // A large block, or an old .xls converted first, takes seconds.
    const WaitPointer busy;
    try {
        if (!grid)
            throwNoSourceGrid();
        ExportOptions options;
        options.variant = m_variant;
        options.path = exportTargetPath(path);
        options.sheet = templateName;
        options.title = title;
        const ReportTable &table = grid->table();
        const QVector<int> chosen = columnchooser::chosenColumns(*m_grid1, table.cols());
        // With no column chosen the written block has no last cell to put
        // borders round: the export fails before the workbook is touched.
        if (chosen.isEmpty())
            throw RuntimeError(ErrorNumber::ApplicationDefined, kNoColumnChosen);
        const WrittenWorkbook written = writeTableToWorkbook(table, chosen, options);
        m_notes = written.notes;
        const QString renamed = renamedTargetNote(path, options.path);
        if (!renamed.isEmpty())
            m_notes.prepend(renamed);
        if (m_check1->isChecked()) {
            const bool opened = m_desktop->openFile ? m_desktop->openFile(written.path)
                                                    : openWithDesktopProgram(written.path);
            if (!opened)
                Q_EMIT statusMessage(grid, kNoSpreadsheetProgram.arg(
                                               QDir::toNativeSeparators(written.path)));
        }
        return true;
    } catch (const RuntimeError &error) {
        m_errorDescription = error.description();
    } catch (const std::exception &error) {
        m_errorDescription = QString::fromUtf8(error.what());
    }
    return false;
}

void ExportWindow::Show()
{
    show();
    raise();
    activateWindow();
}

void ExportWindow::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (m_centred)
        return;
    m_centred = true;
    // The toolbar's buttons too are reached with Tab and pressed with Enter.
    for (QAction *action : m_toolbar1->actions())
        if (QWidget *button = m_toolbar1->widgetForAction(action))
            button->setFocusPolicy(Qt::TabFocus);
    setTabOrderAsLaidOut(this);
    enterPressesButtons(this);
    if (parentWidget()) {
        CenterInMain(this);
    } else if (QScreen *screen = this->screen()) {
        QRect frame = frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        move(frame.topLeft());
    }
}

void ExportWindow::closeEvent(QCloseEvent *event)
{
    QDialog::closeEvent(event);
    if (event->isAccepted())
        unload();
}

void ExportWindow::done(int result)
{
    QDialog::done(result);
    unload();
}

void ExportWindow::unload()
{
    m_unloaded = true;
    deleteLater();
}

void ExportWindow::chooseFile()
{
    const QString folder = saveAsFolder(QCoreApplication::applicationDirPath());
    const QString chosen = m_desktop->saveFileName
                               ? m_desktop->saveFileName(this, folder, kFileFilter)
                               : askSaveFileName(this, folder, kFileFilter);
    if (!chosen.isEmpty())
        m_text1[0]->setText(exportTargetPath(chosen));
}

void ExportWindow::exportClicked()
{
    if (m_text1[1]->text().isEmpty() || m_text1[2]->text().isEmpty()) {
        m_desktop->msgBox(kNeedTitle);
        return;
    }
    if (To_Execl(m_source, m_text1[1]->text(), m_text1[2]->text())) {
        // What was written otherwise than asked is said before the window goes.
        if (!m_notes.isEmpty())
            m_desktop->msgBox(m_notes.join(u'\n'), vb::Information);
        close();
    }
    else
        m_desktop->msgBox(kExportFailed + m_errorDescription, vb::Information);
}

void ExportWindow::trapped(const std::function<void()> &handler)
{
    try {
        handler();
    } catch (const RuntimeError &error) {
        m_desktop->msgBox(error.description(), vb::Information, error.description());
    }
}

} // namespace quorvale
