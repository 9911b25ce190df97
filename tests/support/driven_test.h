#pragma once

#include <QtTest>
#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>

#include "tests/support/driven_terminal.h"

/// Fails at the first step of @p script that does not go as it is to.
#define PLAYS(script) QVERIFY2(t->play(script), qPrintable(t->failure()))

/// A test of the whole terminal, which is started once for all of it.
class DrivenTest : public QObject {
    Q_OBJECT

 protected slots:
    void initTestCase() {
        t = std::make_unique<DrivenTerminal>();
        // Started anew rather than powered on, it comes up at the standby screen.
        t->root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t->tell("settings setup.language 1") && t->start());
    }
    void cleanupTestCase() { t.reset(); }

 protected:
    /// Begins anew at the standby screen, with a controller that is as it should be.
    bool begin() {
        const bool linked = window()->linkUp() || t->reconnect();
        DialogOverlay::closeAll(window());
        window()->changeWindow(QStringLiteral("stayWindow"));
        return linked && t->tell("normal") && t->settle();
    }
    MainWindow* window() const { return t->window.get(); }
    void word(const char* line) { QVERIFY2(t->tell(line), line); }
    void words(std::initializer_list<const char*> lines) {
        for (const char* line : lines)
            word(line);
    }
    void set(const char* field, int value) {
        QVERIFY2(t->set({{field, QString::number(value)}}), field);
    }
    /// What the terminal has sent since this was last asked, without key clicks.
    QStringList sent() { return t->takeFrames(); }
    /// The same in one line, only frames whose code begins with @p codes.
    QString sentLine(const char* codes = "") {
        return sent()
            .filter(QRegularExpression(QLatin1Char('^') + QLatin1String(codes)))
            .join(QLatin1Char('|'));
    }

    /// Gives a test its rows, a line each: the name and values, with bars between them. A line that
    /// is indented by 16 goes on with the row before.
    static void table(const char* text) {
        QTest::addColumn<QByteArrayList>("cells");
        QByteArrayList rows;
        for (const QByteArray& line : QByteArray(text).split('\n')) {
            if (line.startsWith(QByteArray(16, ' ')))
                rows.last() += line;
            else
                rows.append(line);
        }
        for (const QByteArray& row : qAsConst(rows)) {
            QByteArrayList cells;
            for (const QByteArray& cell : row.split('|'))
                cells.append(cell.simplified());
            const QByteArray name = cells.takeFirst();
            QTest::newRow(name.constData()) << cells;
        }
    }
    /// The values of the present row; those that it does not have are empty.
    template <std::size_t count>
    static std::array<QByteArray, count> values() {
        QFETCH(QByteArrayList, cells);
        std::array<QByteArray, count> values;
        std::copy_n(cells.begin(), qMin(cells.size(), int(count)), values.begin());
        return values;
    }

    std::unique_ptr<DrivenTerminal> t;
};
