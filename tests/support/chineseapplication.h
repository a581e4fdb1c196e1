#pragma once

#include "ui/application.h"

#include <QApplication>
#include <QFont>
#include <QLocale>
#include <QTranslator>

namespace quorvale::testing {

// The desktop program's own set-up (Qt's texts in Chinese, its font) for
// the life of one test; the test program's set-up comes back afterwards.
class ChineseApplication {
  public:
    ChineseApplication() { setUpApplication(*static_cast<QApplication *>(QCoreApplication::instance())); }
    ~ChineseApplication()
    {
        QCoreApplication *app = QCoreApplication::instance();
        for (QTranslator *t : app->findChildren<QTranslator *>(Qt::FindDirectChildrenOnly)) {
            QCoreApplication::removeTranslator(t);
            delete t;
        }
        QLocale::setDefault(m_locale);
        QApplication::setFont(m_font);
    }
    ChineseApplication(const ChineseApplication &) = delete;
    ChineseApplication &operator=(const ChineseApplication &) = delete;

  private:
    QFont m_font = QApplication::font();
    QLocale m_locale;
};

} // namespace quorvale::testing
