#pragma once

#include "reports/windows/reportwindow.h"
#include "session/session.h"
#include "support/fixturedb.h"
#include "support/pdfprinter.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QComboBox>
#include <QPointer>
#include <QPushButton>
#include <functional>
#include <gtest/gtest.h>

namespace quorvale {

// Report windows over a fixture database: a signed-in session of department
// D1, a desktop that records and answers every message box (No to a
// question, else OK), and the windows a test opened closed again.
class ReportWindowFixture : public ::testing::Test {
  protected:
    void signIn(const QString &user, const QString &deptName, const QString &post)
    {
        // Signed in as the windows see it, without the audit lookup.
        Session signedIn;
        signedIn.DbConn = db.connection();
        signedIn.CurUserName = user;
        signedIn.CurDeptCode = "D1";
        signedIn.CurDeptName = deptName;
        signedIn.CurPostName = post;
        session = std::make_shared<const Session>(std::move(signedIn));
        desktop->answerBox = [this](const MsgBoxCall &call) {
            boxes.append(call);
            return (call.style & 7) == vb::YesNo ? vb::No : vb::OK;
        };
    }

    // Another sign-in with a change, for the windows opened after it.
    void changeSession(const std::function<void(Session &)> &change)
    {
        Session changed = *session;
        change(changed);
        session = std::make_shared<const Session>(std::move(changed));
    }

    void TearDown() override
    {
        for (const QPointer<ReportWindow> &w : windows)
            delete w.data();
    }

    // The windows print into a PDF file at path instead of the preview.
    void printInto(const QString &path)
    {
        desktop->printer = [path](const std::function<void(Printer &)> &print) {
            testing::PdfFilePrinter printer(path);
            print(*printer);
            printer.finish();
        };
    }

    template <typename Window> Window *open()
    {
        auto *w = new Window(session, desktop);
        w->load();
        windows.append(w);
        return w;
    }

    // Selects the office with the code in Combo1 (none when it is not listed).
    static void choose(ReportWindow *w, const QString &code)
    {
        QComboBox *combo = w->combo1();
        combo->setCurrentIndex(-1);
        for (int i = 0; i < combo->count(); ++i) {
            if (combo->itemText(i).startsWith(code + QLatin1Char(' ')))
                combo->setCurrentIndex(i);
        }
    }

    // Grid rows below the header, each as its cell texts.
    static QList<QStringList> rows(const ReportTable &table)
    {
        QList<QStringList> out;
        QStringList row;
        for (int r = 1; r < table.rows(); ++r) {
            table.readRow(r, row);
            out << row;
        }
        return out;
    }
    static QList<QStringList> rows(const FlexGrid &grid) { return rows(grid.table()); }

    // The non-empty cells of a row as "column=text": what a fill rule wrote,
    // and that it wrote nothing else.
    static QStringList filledCells(const QStringList &row)
    {
        QStringList out;
        for (int c = 0; c < row.size(); ++c) {
            if (!row[c].isEmpty())
                out << QString::number(c) + QLatin1Char('=') + row[c];
        }
        return out;
    }

    FixtureDb db;
    SessionPtr session;
    std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>();
    QList<MsgBoxCall> boxes;
    QList<QPointer<ReportWindow>> windows;
};

// The customer reports' offices are added by each test.
class CustomerFixture : public ReportWindowFixture {
  protected:
    void SetUp() override { signIn("张三", "物业一部", "主管"); }

    void office(const QString &code, const QString &name, const QVariant &commercial = 0,
                const QString &dept = "D1")
    {
        db.insertRows("设置管理处", {"GYD_DH", "GYD_Name", "商用物业", "对应部门代号"},
                      {{code, name, commercial, dept}});
    }
};

} // namespace quorvale
