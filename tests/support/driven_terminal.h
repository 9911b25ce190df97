#pragma once

#include <QApplication>
#include <QLabel>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "app/main_window.h"
#include "app/window_form.h"
#include "link/device_link.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/free_port.h"
#include "tests/support/text_recorder.h"
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
    bool reads(const QString& text) const {
        TextRecorder recorder(window->size());
        window->render(&recorder);
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

    DeviceRoot root;
    ControllerSim sim;
    QStringList frames;  // from the terminal: "code p1 p2", payload in hexadecimal
    std::unique_ptr<MainWindow> window;
};
