#include "session/windows/mdiform1.h"

#include "runtime/programfiles.h"
#include "runtime/runtimeerror.h"
#include "runtime/toplevelhandler.h"
#include "session/mdibackground.h"
#include "session/privileges.h"
#include "session/windows/frmabout.h"
#include "ui/desktop.h"
#include "ui/mdicaptionstyle.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>

namespace quorvale {

namespace {
// Items 权限设置 never switches off, whatever the privilege rows say.
bool isExempt(const QAction *item)
{
    static const QStringList names{QStringLiteral("注销"),     QStringLiteral("关于"),
                                   QStringLiteral("关于软件"), QStringLiteral("联系我们"),
                                   QStringLiteral("退出"),     QStringLiteral("退出系统"),
                                   QStringLiteral("其它模块")};
    return names.contains(item->objectName()) || item->isSeparator() ||
           item->text() == QLatin1String("-");
}

// Set while a child's frame is closing, so that the child's own close event
// does not close the frame a second time.
const char *const closingProperty = "quorvaleClosing";

QMdiSubWindow *frameOf(QObject *child)
{
    auto *widget = qobject_cast<QWidget *>(child);
    return widget ? qobject_cast<QMdiSubWindow *>(widget->parentWidget()) : nullptr;
}

// Picture1: a picture box whose picture is always drawn stretched over it.
class PictureBox : public QWidget {
  public:
    PictureBox(const QImage &picture, QWidget *parent) : QWidget(parent), m_picture(picture)
    {
        setObjectName(QStringLiteral("Picture1"));
    }

  protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(rect(), m_picture);
    }

  private:
    QImage m_picture;
};
} // namespace

MdiForm1::MdiForm1(SessionPtr session, DesktopPtr desktop, WindowFactories windows, QWidget *parent)
    : QMainWindow(parent), m_session(std::move(session)), m_desktop(std::move(desktop)),
      m_windows(std::move(windows))
{
    setObjectName(QStringLiteral("MDIForm1"));
    setWindowTitle(programTitle());
    setAttribute(Qt::WA_DeleteOnClose);

    m_mdiArea = new QMdiArea(this);
    m_captionStyle = new MdiCaptionStyle;
    m_captionStyle->setParent(this);
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdiArea);
    m_mdiArea->viewport()->installEventFilter(this);
    m_plainBackground = m_mdiArea->background();

    buildMenu();

    auto *picture1 = new PictureBox(drawEmblem(QSize(64, 64)), this);
    picture1->setFixedSize(18, 18);
    m_userLabel = new QLabel(this);
    statusBar()->addWidget(picture1);
    statusBar()->addWidget(m_userLabel, 1);

    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        resize(available.size() * 0.85);
        move(available.center() - rect().center());
    }
}

MdiForm1::~MdiForm1() = default;

MdiForm1 *MdiForm1::open(SessionPtr session, DesktopPtr desktop, WindowFactories windows)
{
    auto *w = new MdiForm1(std::move(session), std::move(desktop), std::move(windows));
    w->load();
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

void MdiForm1::load()
{
    // The super-user test has no consequence: privileges are not applied at
    // load, for him or anyone else.
    const Session &s = *m_session;
    [[maybe_unused]] const bool superUser = s.CurUserNo == QStringLiteral("超级用户");

    QStringList who;
    for (const QString &value : {s.CurUserName, s.CurDeptName, s.CurPostName}) {
        if (!value.isEmpty())
            who << value;
    }
    m_userLabel->setText(who.isEmpty() ? s.CurUserNo : who.join(QStringLiteral("  ")));
}

void MdiForm1::buildMenu()
{
    QMenu *reports = menuBar()->addMenu(QStringLiteral("统计报表"));
    reports->menuAction()->setObjectName(QStringLiteral("统计报表"));
    m_menuItems << reports->menuAction();
    addItem(reports, QStringLiteral("房产客户"), QStringLiteral("房产客户-基础数据表"));
    addItem(reports, QStringLiteral("车位客户"), QStringLiteral("车位客户-基础数据表"));
    addItem(reports, QStringLiteral("hb20190829"), QStringLiteral("-"));
    addItem(reports, QStringLiteral("财务数据欠收表房产"),
            QStringLiteral("财务数据欠收表（房产）"));
    addItem(reports, QStringLiteral("财务数据欠收表车位"),
            QStringLiteral("财务数据欠收表（车位）"));
    addItem(reports, QStringLiteral("line1"), QStringLiteral("-"));
    addItem(reports, QStringLiteral("财务数据预收表房产"),
            QStringLiteral("财务数据预收表（房产）"));
    addItem(reports, QStringLiteral("财务数据预收表车位"),
            QStringLiteral("财务数据预收表（车位）"));

    QMenu *quit = menuBar()->addMenu(QStringLiteral("退出系统"));
    quit->menuAction()->setObjectName(QStringLiteral("退出系统"));
    m_menuItems << quit->menuAction();
    QAction *quitNow = addItem(quit, QStringLiteral("退出"), QStringLiteral("退出"));
    // Ends at once: the closing question belongs to the window frame only.
    connect(quitNow, &QAction::triggered, this, [this] { m_desktop->end(0); });

    QMenu *about = menuBar()->addMenu(QStringLiteral("关于"));
    about->menuAction()->setObjectName(QStringLiteral("关于"));
    m_menuItems << about->menuAction();
    addItem(about, QStringLiteral("关于软件"), QStringLiteral("关于软件"));
    addItem(about, QStringLiteral("联系我们"), QStringLiteral("联系我们"));
}

QAction *MdiForm1::addItem(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *item = caption == QLatin1String("-") ? menu->addSeparator() : menu->addAction(caption);
    item->setObjectName(name);
    if (!item->isSeparator() && name != QStringLiteral("退出"))
        connect(item, &QAction::triggered, this, [this, name] { showWindow(name); });
    m_menuItems << item;
    return item;
}

QWidget *MdiForm1::openWindow(const QString &menuItemName) const
{
    return m_openWindows.value(menuItemName);
}

QWidget *MdiForm1::showWindow(const QString &menuItemName)
{
    QWidget *w = openWindow(menuItemName);
    // The About window is the main window's own, and a window of its own.
    const bool about = menuItemName == QStringLiteral("关于软件");
    if (!w) {
        const WindowFactory factory = m_windows.value(menuItemName);
        if (about)
            w = new FrmAbout(m_desktop);
        else if (factory)
            w = factory(m_session, m_desktop);
        if (!w)
            return nullptr;
        m_openWindows.insert(menuItemName, w);
        if (!about) {
            QMdiSubWindow *sub = m_mdiArea->addSubWindow(w);
            sub->setStyle(m_captionStyle);
            // A child maximized at once keeps its designed size for "restore down".
            sub->resize(sub->sizeHint());
            watchChild(w, sub);
        } else {
            w->setParent(this, Qt::Dialog);
        }
    }
    if (QMdiSubWindow *sub = frameOf(w)) {
        sub->show();
        w->show();
        m_mdiArea->setActiveSubWindow(sub);
        sub->raise();
    } else {
        w->show();
        w->raise();
        w->activateWindow();
    }
    return w;
}

void MdiForm1::watchChild(QWidget *widget, QMdiSubWindow *sub)
{
    widget->installEventFilter(this);
    sub->installEventFilter(this);
}

bool MdiForm1::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_mdiArea->viewport() && event->type() == QEvent::Resize) {
        updateBackground();
    } else if (event->type() == QEvent::Close) {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(watched)) {
            sub->setProperty(closingProperty, true);
            QTimer::singleShot(0, sub, [sub] { sub->setProperty(closingProperty, false); });
        } else if (QPointer<QMdiSubWindow> sub = frameOf(watched);
                   sub && !sub->property(closingProperty).toBool()) {
            // A child window that closes itself takes its frame along, so the
            // next menu click creates it anew.
            QPointer<QWidget> child = static_cast<QWidget *>(watched);
            QTimer::singleShot(0, sub, [sub, child] {
                if (sub && (!child || child->isHidden())) {
                    sub->setProperty(closingProperty, true);
                    sub->close();
                }
            });
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void MdiForm1::updateBackground()
{
    // Read afresh at every resize, so a picture put in place or changed while
    // the program runs shows at the next one; without one the area stays plain.
    m_mdiArea->setBackground(m_plainBackground);
    const QImage picture(mainBackgroundPath());
    const QSize size = m_mdiArea->viewport()->size();
    if (picture.isNull() || size.isEmpty())
        return;
    m_mdiArea->setBackground(QBrush(
        QPixmap::fromImage(picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))));
}

void MdiForm1::closeEvent(QCloseEvent *event)
{
    if (m_desktop->msgBox(QStringLiteral("确认要退出系统吗？"), vb::YesNo + vb::Information,
                          QStringLiteral("系统提示")) == vb::No) {
        event->ignore();
        return;
    }
    event->accept();
    m_desktop->end(0);
}

void MdiForm1::权限设置(const QString &Memo)
{
    try {
        for (QAction *item : m_menuItems) {
            if (!isExempt(item))
                item->setEnabled(false);
        }
        // Rows come False before True, so any granting row wins.
        for (const auto &[formName, popedom] : menuPrivileges(*m_session, Memo)) {
            for (QAction *item : m_menuItems) {
                if (item->objectName() == formName) {
                    item->setEnabled(false);
                    item->setEnabled(popedom);
                    break;
                }
            }
        }
    } catch (const RuntimeError &e) {
        m_desktop->msgBox(QStringLiteral("错误号：") + QString::number(e.number()) +
                              QStringLiteral("\n") + QStringLiteral("错误描述：") + e.description(),
                          vb::Information, QStringLiteral("提示"));
    }
}

QString mainBackgroundPath()
{
    return programFile(QStringLiteral("MDI.BMP"));
}

} // namespace quorvale
