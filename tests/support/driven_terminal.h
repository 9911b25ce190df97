#pragma once

#include <QApplication>
#include <QHash>
#include <QLabel>
#include <QPointer>
#include <QtTest>
#include <algorithm>
#include <memory>
#include <utility>

#include "app/main_window.h"
#include "app/menu_timer.h"
#include "app/window_form.h"
#include "link/device_link.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/free_port.h"
#include "tools/gallery/paint_recorder.h"
#include "ui/dialog_overlay.h"
#include "ui/input_field.h"
#include "ui/row_list.h"
#include "ui/scroll_list.h"
#include "ui/touch_shield.h"

/// The real main window with a simulated controller at the other end of a real socket, in a device
/// root of its own; driven by a finger on the window and by the controller's words. One per
/// process.
class DrivenTerminal {
 public:
    DrivenTerminal() : sim(0, 0, root.path("/mnt/data")) {
        QObject::connect(&sim, &ControllerSim::frameReceived, &sim,
                         [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
                             QString frame = QStringLiteral("%1 %2 %3").arg(code).arg(p1).arg(p2);
                             if (!payload.isEmpty())
                                 frame += QLatin1Char(' ') + QLatin1String(payload.toHex(' '));
                             frames.append(frame);
                         });
        // A test's finger knows what it touches.
        TouchShield::setTime(0);
        qputenv("ZEL_LINK_PORT", QByteArray::number(sim.port()));
        qputenv("ZEL_REST_PORT", QByteArray::number(freePort()));
    }

    /// Starts the terminal, also anew; false when it does not come up and get its settings.
    bool start() {
        window.reset();
        window = std::make_unique<MainWindow>();
        window->show();
        return QTest::qWaitForWindowExposed(window.get()) &&
               QTest::qWaitFor([this] { return window->settingsArrived(); });
    }
    /// Connects again at once rather than at the next attempt.
    bool reconnect() {
        window->findChild<DeviceLink*>()->open(sim.port());
        return QTest::qWaitFor([this] { return window->linkUp(); });
    }
    /// Has the controller carry words out; false when it knows better.
    bool tell(const QString& words) {
        return sim.execute(words).section(QLatin1Char('\n'), -1).startsWith(QLatin1String("ok"));
    }
    bool tell(const char* words) { return tell(QString::fromUtf8(words)); }
    /// Waits until whatever either side has sent has arrived at the other.
    bool settle() {
        const QString last = QStringLiteral("1908 0 0 ff 7f");
        QCoreApplication::processEvents();
        frames.removeAll(last);
        window->PlaySound(0x7fff);
        const bool arrived = QTest::qWaitFor([&] { return frames.contains(last); });
        frames.removeAll(last);
        return arrived;
    }
    /// Has the controller take settings over, FIELD and VALUE in turns.
    bool set(const QList<std::pair<const char*, QString>>& settings) {
        return std::all_of(settings.begin(), settings.end(), [this](const auto& one) {
            return tell(QStringLiteral("settings %1 %2").arg(QLatin1String(one.first), one.second));
        });
    }
    /// Whether both sides have the same settings.
    bool agrees() const {
        const _gui_menu_ record = window->menuRecord();
        return memcmp(&record, &sim.settings(), sizeof record) == 0;
    }
    /// Goes to the screen @p title with the settings of the controller, and forgets what has been
    /// sent before.
    bool open(const char* title) {
        const bool agreed = QTest::qWaitFor([this] { return agrees(); });
        window->changeWindow(QLatin1String(title));
        const bool settled = settle();
        frames.clear();
        return agreed && settled;
    }
    /// Has the settings hold an administrator's password, and types it where it is asked for.
    bool lock() {
        return tell("settings setup.adminPassword 2468") &&
               QTest::qWaitFor([this] { return agrees(); });
    }
    void enterPassword() {
        find<InputField>("passwordField")->setText(QStringLiteral("2468"));
        tap("forwardButton");
    }
    /// What the terminal has sent since this was last asked, without key clicks.
    QStringList takeFrames() {
        if (!settle())
            return {QStringLiteral("lost")};
        frames.removeAll(QStringLiteral("5000 0 0"));
        return std::exchange(frames, {});
    }
    /// Waits until a frame has been sent that begins like this: code, parameters, payload.
    bool sends(const char* frame) {
        return QTest::qWaitFor([&] { return sent(frame) >= 0; });
    }
    /// Where the first such frame stands in the order of sending, -1 when there is none.
    int sent(const char* frame) const {
        for (int i = 0; i < frames.size(); ++i) {
            if (frames.at(i).startsWith(QLatin1String(frame)))
                return i;
        }
        return -1;
    }

    /// Waits until the screen @p name is up.
    bool shows(const char* name) {
        return QTest::qWaitFor([&] { return title() == QLatin1String(name); });
    }
    QString title() const { return window->getActivateWindowForm()->getTitle(); }
    /// The visible widget named @p name.
    template <class Widget = QWidget>
    Widget* find(const char* name) const {
        const QList<Widget*> found = window->findChildren<Widget*>(QLatin1String(name));
        for (Widget* widget : found) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    /// A finger's tap at @p place in the window.
    void tap(const QPoint& place) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    /// The middle of the visible widget named @p name or a place @p across it, in the window;
    /// scrolled to if need be.
    QPoint place(const char* name, qreal across = 0.5) const {
        auto* widget = find(name);
        for (QWidget* up = widget; up != nullptr; up = up->parentWidget()) {
            if (auto* list = qobject_cast<ScrollList*>(up))
                list->reveal(widget);
        }
        return widget->mapTo(
            window.get(), QPoint(static_cast<int>(widget->width() * across), widget->height() / 2));
    }
    void tap(const char* name, qreal across = 0.5) { tap(place(name, across)); }
    /// The row of the visible list of rows that has the text @p text; invalid when there is none.
    QModelIndex row(const QString& text) const {
        const auto lists = window->findChildren<RowList*>();
        for (const RowList* list : lists) {
            if (list->isVisible())
                return list->model()
                    ->match(list->model()->index(0, 0), Qt::DisplayRole, text, 1,
                            Qt::MatchExactly | Qt::MatchCaseSensitive)
                    .value(0);
        }
        return {};
    }
    /// Touches it, after scrolling to it.
    void tapRow(const QModelIndex& index) {
        const auto lists = window->findChildren<RowList*>();
        for (RowList* list : lists) {
            if (!list->isVisible() || list->model() != index.model())
                continue;
            list->reveal(index);
            tap(list->viewport()->mapTo(window.get(), list->rowBox(index).center()));
        }
    }
    QString text(const char* key) const { return window->getScript(QLatin1String(key)).script; }
    /// Whether @p text can be read on the window.
    bool reads(const QString& text) const { return reads(text, window.get()); }
    static bool reads(const QString& text, QWidget* widget) {
        PaintRecorder recorder(widget->size());
        widget->render(&recorder);
        return recorder.has(text);
    }
    bool readsKey(const char* key) const { return reads(text(key)); }
    /// What the dialog in front says; empty when there is none.
    QString dialogText() const {
        const auto* label = find<QLabel>("dialogText");
        return label != nullptr ? label->text() : QString();
    }
    /// Whether it says the text of @p key, and can be seen.
    bool says(const char* key) const {
        const auto* dialog = DialogOverlay::current(window.get());
        return dialog != nullptr && !text(key).isEmpty() && dialogText().contains(text(key)) &&
               dialog->isAncestorOf(window->childAt(window->rect().center()));
    }

    /// Plays the steps of @p script, which have blanks between them; false at the first one that
    /// fails, of which failure() tells. Within a step "_" stands for a blank; a name of phrases
    /// stands for its steps.
    ///
    ///     name      touches that widget as soon as it is to be seen
    ///     <name     at its left end, >name at its right end
    ///     #12BCD    touches keys: B is backspace, C clears, D is done
    ///     /text     touches the row of the list that has this text, where "_" stands for itself
    ///     :screen   goes there, and forgets what has been sent before
    ///     !words    are the controller's, once all has arrived; after !drop it stays away
    ///     *name50   ends the time of the timer of that name (answerTimer without one), which
    ///               takes so many milliseconds (without a number: any)
    ///     [a,b]     all frames of these codes since this was last asked ([]: any)
    ///     @screen   waits until it is up
    ///     ?key      until a dialog or a guide says this (without a key: anything)
    ///     ^frame    until one has been sent that begins like this
    ///     name=text until this, or the text of that key, is read on the widget (or anywhere)
    ///     +name     until it can be touched
    ///     ~         until no menu times out
    ///     -         before one of these, a name, or *name for "it runs": it is not so, once all
    ///               has arrived (-+name: seen, but not to be touched)
    bool play(const QByteArray& script) {
        for (const QByteArray& one : spelt(script).split(' ')) {
            const bool seen = !one.startsWith("-+") || holds(one.mid(2));
            if (one.startsWith('-') ? settled() && !holds(one.mid(1)) && seen : plays(one))
                continue;
            failure_ = QStringLiteral("%1 fails on %2, which says '%3'; sent: %4")
                           .arg(QString::fromUtf8(one), title(), dialogText(),
                                frames.join(QLatin1Char('|')));
            return false;
        }
        return true;
    }
    /// The words of @p script with those of the phrases in their places.
    QByteArray spelt(const QByteArray& script) const {
        QByteArrayList all;
        for (const QByteArray& one : script.simplified().split(' '))
            all += phrases.contains(one) ? spelt(phrases[one]) : one;
        return all.join(' ');
    }
    const QString& failure() const { return failure_; }

    DeviceRoot root;
    ControllerSim sim;
    QStringList frames;  // from the terminal: "code p1 p2", payload in hexadecimal
    std::unique_ptr<MainWindow> window;
    QHash<QByteArray, QByteArray> phrases{
        {"NEXT", "forwardButton"},
        {"BACK", "backButton"},
        {"OK", "dialogOkButton"},
        {"NO", "dialogCancelButton"},
        {"SAVED", "?ListItem_ConfigurationComplete dialogOkButton"}};

 private:
    static QString spaced(QByteArray step) { return QString::fromUtf8(step.replace('_', ' ')); }
    bool plays(const QByteArray& step) {
        const QByteArray rest = step.mid(1);
        switch (step[0]) {
            case '<':
                return touches(rest, 0.2);
            case '>':
                return touches(rest, 0.8);
            case '#':
                return std::all_of(rest.begin(), rest.end(), [this](char key) {
                    return touches(key == 'B'   ? "key_backspace"
                                   : key == 'C' ? "key_clear"
                                   : key == 'D' ? "key_done"
                                                : QByteArray("key_") + key);
                });
            case '/': {
                const QString text = QString::fromUtf8(rest);
                const bool there = QTest::qWaitFor([&] { return row(text).isValid(); });
                tapRow(row(text));
                return there;
            }
            case '!':
                return settled() && tell(spaced(rest)) && (rest != "drop" || staysAway());
            case ':':
                return settled() && goesTo(rest.constData());
            case '*':
                return settled() && runsOut(rest);
            case '[':
                return sentOnly(
                    spaced(rest.chopped(1)).split(QLatin1Char(','), Qt::SkipEmptyParts));
            default:
                return strchr("@?^=+~", step[0]) == nullptr && !step.contains('=')
                           ? touches(step)
                           : QTest::qWaitFor([&] { return holds(step); });
        }
    }
    bool holds(const QByteArray& step) const {
        const QByteArray rest = step.mid(1);
        const char* const name = rest.constData();
        switch (step[0]) {
            case '@':
                return title() == QLatin1String(name);
            case '?':
                return rest.isEmpty() ? !dialogText().isEmpty() : says(name) || guides(name);
            case '^':
                return sent(spaced(rest).toLatin1().constData()) >= 0;
            case '+':
                return find(name) != nullptr && find(name)->isEnabled();
            case '*': {
                const auto timers = window->findChildren<QTimer*>(QLatin1String(name));
                return std::any_of(timers.begin(), timers.end(),
                                   [](const QTimer* timer) { return timer->isActive(); });
            }
            case '~':
                return !window->findChild<MenuTimer*>()->isRunning();
            default:
                return step.contains('=')
                           ? shows(step.left(step.indexOf('=')), step.mid(step.indexOf('=') + 1))
                           : find(step.constData()) != nullptr;
        }
    }
    bool goesTo(const char* name) {
        window->changeWindow(QLatin1String(name));
        const bool gone = settled();
        frames.clear();
        return gone;
    }
    bool settled() { return !window->linkUp() || settle(); }
    /// Has the controller not be found again before reconnect().
    bool staysAway() {
        const bool lost = QTest::qWaitFor([this] { return !window->linkUp(); });
        window->findChild<DeviceLink*>()->open(freePort());
        return lost;
    }
    bool touches(const QByteArray& name, qreal across = 0.5) {
        const bool there = QTest::qWaitFor([&] { return find(name.constData()) != nullptr; });
        if (there)
            tap(name.constData(), across);
        return there;
    }
    /// Whether @p what, a text or its key, can be read on the widget @p name or on the window.
    bool shows(const QByteArray& name, const QByteArray& what) const {
        QWidget* widget = name.isEmpty() ? window.get() : find(name.constData());
        const QString key = text(what.constData());
        const QString wanted = key.isEmpty() ? spaced(what) : key;
        if (const auto* field = qobject_cast<InputField*>(widget))
            return field->text() == wanted;
        if (const auto* label = qobject_cast<QLabel*>(widget))
            return label->text().contains(wanted);
        return widget != nullptr && reads(wanted, widget);
    }
    /// Whether it is said below what the dialog in front says, or as what the person is to do.
    bool guides(const char* key) const {
        const auto* second = find<QLabel>("dialogSecondText");
        const auto* guide = find("guide");
        return (second != nullptr && !text(key).isEmpty() && second->text().contains(text(key))) ||
               (guide != nullptr && guide->property("textKey") == QLatin1String(key));
    }
    bool sentOnly(const QStringList& wanted) {
        QStringList others;
        for (const QString& frame : takeFrames()) {
            const QString code = frame.section(QLatin1Char(' '), 0, 0);
            if (!wanted.filter(QRegularExpression(QLatin1Char('^') + code)).isEmpty())
                others.append(frame);
        }
        frames = others == wanted ? QStringList() : others;
        return others == wanted;
    }
    /// Has the time of a running timer be over, which the menus' time does not forestall.
    bool runsOut(const QByteArray& which) {
        const auto digit = std::find_if(which.begin(), which.end(), isdigit);
        const QByteArray name = which.left(int(digit - which.begin()));
        const int time = which.mid(name.size()).toInt();
        auto* menus = window->findChild<MenuTimer*>();
        for (QPointer<QTimer> timer : window->findChildren<QTimer*>(
                 QLatin1String(name.isEmpty() ? "answerTimer" : name.constData()))) {
            const int before = timer->interval();
            if (!timer->isActive() || (time != 0 && before != time))
                continue;
            if (name.isEmpty())
                emit menus->timedOut(QStringLiteral("stayWindow"));
            else if (menus->isRunning() && menus->seconds() * 1000 <= before)
                return false;
            if (!timer || !timer->isActive())
                return false;
            timer->setInterval(0);
            QCoreApplication::processEvents();
            if (timer)
                timer->setInterval(before);
            return true;
        }
        return false;
    }

    QString failure_;
};
