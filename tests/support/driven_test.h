#pragma once

#include <QtTest>
#include <initializer_list>
#include <memory>
#include <utility>

#include "tests/support/driven_terminal.h"

/// A test of the whole terminal, which is started once for all of it.
class DrivenTest : public QObject {
    Q_OBJECT

 protected slots:
    void initTestCase() {
        t = std::make_unique<DrivenTerminal>();
        // Started anew rather than powered on, it comes up at the standby screen.
        t->root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t->start());
    }
    void cleanupTestCase() { t.reset(); }

 protected:
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
    QStringList sent() {
        if (!t->settle())
            return {QStringLiteral("lost")};
        t->frames.removeAll(QStringLiteral("5000 0 0"));
        return std::exchange(t->frames, {});
    }
    /// The same in one line, only frames whose code begins with @p codes.
    QString sentLine(const char* codes = "") {
        return sent()
            .filter(QRegularExpression(QLatin1Char('^') + QLatin1String(codes)))
            .join(QLatin1Char('|'));
    }

    std::unique_ptr<DrivenTerminal> t;
};
