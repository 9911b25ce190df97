#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QTcpSocket>

#include "app/window_form.h"
#include "fuzz_root.h"
#include "tools/gallery/stage.h"
#include "ui/touch_shield.h"

/// The whole terminal for fuzz targets, made at the first input. What one input leaves behind is
/// put back for the next; now and then the terminal is started anew, so that nothing adds up that
/// nobody would find again.
class FuzzStage {
 public:
    static FuzzStage& shared() {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        keepSilent();
        // The thread's own go before anything that Qt has made for all threads meanwhile.
        static thread_local QApplication application(argc, argv);
        static thread_local FuzzStage stage;
        return stage;
    }

    Stage& stage() { return stage_; }

    /// The title of the screen number @p index of all.
    QString title(int index) {
        const auto& windows = stage_.window().windowList();
        return windows.at(index % windows.size())->getTitle();
    }
    /// Shows a screen as it comes up.
    void open(const QString& title) {
        constexpr int kInputsOfOneStart = 5000;
        if (++inputs_ % kInputsOfOneStart == 0 || !stage_.window().linkUp())
            stage_.restart();
        stage_.window().setChangeWindowFlag(true);
        stage_.changeSettings(stage_.settings());
        stage_.open(title);
    }
    void touch(const QPoint& place) {
        QWidget* target = stage_.window().childAt(place);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            if (target == nullptr || !target->isEnabled())
                return;
            QMouseEvent event(type, target->mapFrom(&stage_.window(), place), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &event);
            target = stage_.window().childAt(place);
        }
        QCoreApplication::sendPostedEvents();
    }
    /// Lets everything have its effect, paints, and returns what the terminal has sent.
    QByteArray settle() {
        stage_.picture();
        QCoreApplication::processEvents();
        QByteArray sent;
        const auto sockets = stage_.controller().findChildren<QTcpSocket*>();
        for (QTcpSocket* socket : sockets)
            sent += socket->readAll();
        return sent;
    }

 private:
    FuzzStage() { TouchShield::setTime(0); }

    Stage stage_;
    int inputs_ = 0;
};
