// The desktop program's memory as a user meets it: signed in on a demo
// database whose office BIG lists N rows per report (default 100,000), the
// main window opens the property arrears window, computes BIG with the
// window's defaults, exports every column, closes the window; then the same
// with the property customer report. Prints the resident size before each
// window opened, the peak while computing and while exporting, and the size
// after the window closed.
// Usage: bench_desktop_memory [rows] [folder] [arrears|customers]
//        (QT_QPA_PLATFORM=offscreen)
// With a folder, the workbooks are kept there; naming a report runs only it.
// The last lines are machine-readable: "result report=... key=value ...".
//
// It drives the windows only through what every version of them offers
// (the login window's command line, the menu item, the buttons), so the same
// source measures an earlier tree too.

#if __has_include("ui/desktop.h")
#define QUORVALE_DESKTOP_GIVEN 1
#include "dbtools/databasefile.h"
#include "reports/windows/reportwindow.h"
#include "reports/windows/reportwindows.h"
#include "session/windows/frmlogin.h"
#include "session/windows/mdiform1.h"
#include "ui/desktop.h"
#elif __has_include("dbtools/databasefile.h")
#include "dbtools/databasefile.h"
#include "reports/windows/reportregistry.h"
#include "reports/windows/reportwindow.h"
#include "session/windows/frmlogin.h"
#include "session/windows/mdiform1.h"
#else
#include "reports/reportregistry.h"
#include "reports/reportwindow.h"
#include "session/frmlogin.h"
#include "session/mdiform1.h"
#include "tools/databasefile.h"
#endif
#include "processmemory.h"
#include "runtime/settings.h"
#include "ui/flexgrid.h"
#include "ui/msgbox.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

using namespace quorvale;

namespace {

double residentMb()
{
    return bench::residentKiB() / 1024.0;
}

double peakMb()
{
    return bench::peakKiB() / 1024.0;
}

// Lets queued deletions and repaints run, as the event loop would between clicks.
void settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QWidget *visibleWidget(const QString &name)
{
    for (QWidget *w : QApplication::allWidgets())
        if (w->objectName() == name && w->isVisible())
            return w;
    return nullptr;
}

struct Measured {
    double before = 0, computed = 0, computePeak = 0, exportPeak = 0, closed = 0;
    double computeSeconds = 0, exportSeconds = 0, workbookMb = 0;
    int rows = 0;
};

Measured measure(MdiForm1 &main, const QString &menuItem, const QString &exporter,
                 const QString &workbook)
{
    Measured m;
    settle();
    m.before = residentMb();
    auto *window = qobject_cast<ReportWindow *>(main.showWindow(menuItem));
    if (!window)
        qFatal("no report window for %s", qPrintable(menuItem));
    QComboBox *offices = window->combo1();
    offices->setCurrentIndex(offices->findText(QStringLiteral("BIG "), Qt::MatchStartsWith));

    bench::resetPeak();
    QElapsedTimer timer;
    timer.start();
    window->ReportCommand(ReportWindow::Compute);
    settle();
    m.computeSeconds = timer.elapsed() / 1000.0;
    m.computePeak = peakMb();
    m.computed = residentMb();
    m.rows = window->grid()->Rows() - 1;

    bench::resetPeak();
    timer.restart();
    window->ReportCommand(ReportWindow::Export);
    QWidget *dialog = visibleWidget(exporter);
    if (!dialog)
        qFatal("the export window %s did not open", qPrintable(exporter));
    dialog->findChild<QLineEdit *>(QStringLiteral("Text1_0"))->setText(workbook);
    dialog->findChild<QAction *>(QStringLiteral("输出"))->trigger();
    settle();
    m.exportSeconds = timer.elapsed() / 1000.0;
    m.exportPeak = peakMb();
    m.workbookMb = QFileInfo(workbook).size() / 1048576.0;

    window->close();
    settle();
    m.closed = residentMb();
    return m;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir dir;
    // The settings this run writes stay in its own folder.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(dir.filePath(QStringLiteral("config"))));
    QApplication app(argc, argv);
    const int scale = argc > 1 ? std::atoi(argv[1]) : 100000;
    const QString folder = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    const QDir kept(folder.isEmpty() ? dir.path() : folder);

    const QString path = dir.filePath(QStringLiteral("bench.db"));
    DatabaseFileOptions options;
    options.demo = true;
    options.scale = scale;
    createDatabaseFile(path, options);
    const QString program = QStringLiteral("Quorvale"), section = QStringLiteral("DBConfig");
    const auto save = [&](const char *key, const QString &value) {
        SettingsStore::SaveSetting(program, section, QString::fromLatin1(key), value);
    };
    save("Svr", QStringLiteral("sqlite:") + path);
    save("UID", QStringLiteral("demo"));
    save("PWD", QStringLiteral("demo"));
    save("DBname", QStringLiteral("q"));

    // Boxes (a note after an export) are answered as a user would: OK.
    int boxes = 0;
    const auto answer = [&boxes](const MsgBoxCall &) {
        ++boxes;
        return vb::OK;
    };
    // The finance manager's post, whose audit right lists every office.
    const QString commandLine = QStringLiteral("1002,李娜,D03,财务部,GW05,财务经理,,,,");
#ifdef QUORVALE_DESKTOP_GIVEN
    auto desktop = std::make_shared<Desktop>();
    desktop->answerBox = answer;
    (new FrmLogin(desktop, reportWindowFactories()))->load(commandLine);
    MdiForm1 *main = nullptr;
    for (QWidget *window : QApplication::topLevelWidgets())
        main = main ? main : qobject_cast<MdiForm1 *>(window);
#else
    setMsgBoxResponder(answer);
    registerReportWindows();
    (new FrmLogin)->load(commandLine);
    MdiForm1 *main = MdiForm1::instance();
#endif
    if (!main)
        qFatal("the main window did not open");
    main->resize(1280, 800);
    settle();
    const double started = residentMb();

    const struct {
        const char *key;
        QString menuItem, exporter;
    } reports[] = {
        {"arrears", QStringLiteral("财务数据欠收表房产"), QStringLiteral("frmToExcelnew")},
        {"customers", QStringLiteral("房产客户"), QStringLiteral("frmToExcel")},
    };
    std::printf("main window open at %.0f MB\n", started);
    const QByteArray only = argc > 3 ? QByteArray(argv[3]) : QByteArray();
    for (const auto &report : reports) {
        if (!only.isEmpty() && only != report.key)
            continue;
        const Measured m = measure(*main, report.menuItem, report.exporter,
                                   kept.absoluteFilePath(QStringLiteral("%1.xlsx").arg(report.key)));
        std::printf("result report=%s rows=%d before_mb=%.0f compute_peak_mb=%.0f "
                    "computed_mb=%.0f export_peak_mb=%.0f closed_mb=%.0f compute_s=%.2f "
                    "export_s=%.2f xlsx_mb=%.1f\n",
                    report.key, m.rows, m.before, m.computePeak, m.computed, m.exportPeak,
                    m.closed, m.computeSeconds, m.exportSeconds, m.workbookMb);
    }
    std::printf("result report=all boxes=%d\n", boxes);
    // Measured; an earlier tree's process-wide connection cannot be torn
    // down after the application object, so none is.
    std::fflush(stdout);
    std::_Exit(0);
}
