#pragma once

#include <QObject>
#include <QPageLayout>

class QWidget;

namespace quorvale {

// The paper, orientation and margins the clerk chose for printing, shared
// by every report window of one main window for as long as it is open.
class PageSetup : public QObject {
    Q_OBJECT

  public:
    // The setup of the window's top-level window, made on first use.
    static PageSetup &of(QWidget *window);

    QPageLayout &layout() { return m_layout; }
    // Qt's page setup dialog on the current paper; true when the clerk
    // took what it shows, which then is the paper of every later print.
    bool choose(QWidget *parent);

  private:
    explicit PageSetup(QObject *owner);
    QPageLayout m_layout;
};

} // namespace quorvale
