#pragma once

#include "session/session.h"
#include "ui/desktop.h"

#include <QBrush>
#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <functional>

class QAction;
class QLabel;
class QMdiArea;
class QStyle;
class QMenu;
class QMdiSubWindow;

namespace quorvale {

using WindowFactory =
    std::function<QWidget *(const SessionPtr &session, const DesktopPtr &desktop)>;
// The windows the menu items open inside the main window, by the item's
// control name (e.g. "房产客户"). A factory runs when its window does not
// exist yet; items without one open nothing.
using WindowFactories = QHash<QString, WindowFactory>;

// The multiple-document main window "MDIForm1": the menu, the background
// picture, the closing question and the post privileges of the menu items.
class MdiForm1 : public QMainWindow {
    Q_OBJECT
  public:
    MdiForm1(SessionPtr session, DesktopPtr desktop, WindowFactories windows,
             QWidget *parent = nullptr);
    ~MdiForm1() override;

    // Creates and loads the main window of a signed-in session, shows it
    // modelessly and brings it to the front. Errors of the load are not trapped.
    static MdiForm1 *open(SessionPtr session, DesktopPtr desktop, WindowFactories windows);

    // Window load: the signed-in user in the status bar.
    void load();
    const SessionPtr &session() const { return m_session; }
    const DesktopPtr &desktop() const { return m_desktop; }

    // Shows the window of a menu item: created at most once, modeless,
    // brought to the front. Returns it, or nullptr when nothing is wired.
    QWidget *showWindow(const QString &menuItemName);
    // The open window of a menu item, or nullptr.
    QWidget *openWindow(const QString &menuItemName) const;

    // Switches the menu items on and off from the post's privilege rows of
    // one module; errors are shown in a box and leave the menu as far as it got.
    void 权限设置(const QString &Memo);

    QMdiArea *mdiArea() const { return m_mdiArea; }
    // Every menu item in menu order, top menus and separators included.
    const QList<QAction *> &menuItems() const { return m_menuItems; }

  protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void buildMenu();
    QAction *addItem(QMenu *menu, const QString &name, const QString &caption);
    void updateBackground();
    void watchChild(QWidget *widget, QMdiSubWindow *sub);

    SessionPtr m_session;
    DesktopPtr m_desktop;
    WindowFactories m_windows;
    QMdiArea *m_mdiArea;
    QStyle *m_captionStyle;
    QLabel *m_userLabel;
    QList<QAction *> m_menuItems;
    QHash<QString, QPointer<QWidget>> m_openWindows;
    QBrush m_plainBackground;
};

// Where the main window looks for its background bitmap: the program's folder,
// or an installation's data folder.
QString mainBackgroundPath();

} // namespace quorvale
