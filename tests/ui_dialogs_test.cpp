#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <memory>

#include "sim/device_root.h"
#include "ui/dialog_form.h"
#include "ui/theme.h"
#include "ui/wait_form.h"
#include "ui/widget_button.h"

namespace {

ScriptHandler::Script script(const QString& text) {
    ScriptHandler::Script made;
    made.size = 26;
    made.height = 95;
    made.script = text;
    return made;
}

}  // namespace

class UiDialogsTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        window = std::make_unique<QWidget>();
        window->resize(Theme::kScreenWidth, Theme::kScreenHeight);
        behind = new WidgetButton(window.get());
        behind->setGeometry(0, 0, 100, 100);
        entry = new QLineEdit(window.get());
        entry->setGeometry(0, 700, 100, 50);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        entry->setFocus();
    }

    void cleanup() { window.reset(); }

    void tellsTheAnswer() {
        DialogForm dialog(window.get());
        QSignalSpy ok(&dialog, &DialogForm::touchOk);
        QSignalSpy cancel(&dialog, &DialogForm::touchCancel);
        QSignalSpy closed(&dialog, &DialogForm::closePopup);
        // A handler may ask the next question with the same dialog.
        connect(&dialog, &DialogForm::touchOk, &dialog, &QWidget::show);
        dialog.setButtonType(272);
        dialog.show();
        touch(centreOf(dialog.findChild<QWidget*>(QStringLiteral("dialogOkButton"))));
        QVERIFY(dialog.isVisible());
        QCOMPARE(ok.count(), 1);
        QCOMPARE(cancel.count() + closed.count(), 0);
        touch(centreOf(dialog.findChild<QWidget*>(QStringLiteral("dialogCancelButton"))));
        QVERIFY(!dialog.isVisible());
        QCOMPARE(ok.count(), 1);
        QCOMPARE(cancel.count(), 1);
        QCOMPARE(closed.count(), 1);
    }

    void placesTheButtons() {
        DialogForm dialog(window.get());
        dialog.show();
        const auto* ok = dialog.findChild<QWidget*>(QStringLiteral("dialogOkButton"));
        const auto* cancel = dialog.findChild<QWidget*>(QStringLiteral("dialogCancelButton"));
        dialog.setButtonType(0);
        QVERIFY(!ok->isVisible() && !cancel->isVisible());
        dialog.setButtonType(16);
        QVERIFY(ok->isVisible() && !cancel->isVisible());
        QCOMPARE(ok->width(), 366);
        dialog.setButtonType(272);
        QVERIFY(ok->isVisible() && cancel->isVisible());
        QVERIFY(cancel->geometry().right() < ok->x());
        QCOMPARE(ok->size(), QSize(177, 72));
    }

    void closesByItself() {
        DialogForm dialog(window.get(), 1);
        QSignalSpy ok(&dialog, &DialogForm::touchOk);
        QSignalSpy closed(&dialog, &DialogForm::closePopup);
        for (int shows = 1; shows <= 2; ++shows) {
            dialog.show();
            QTRY_VERIFY(!dialog.isVisible());
            QCOMPARE(closed.count(), shows);
        }
        dialog.setAutoClose(0);
        dialog.show();
        dialog.hide();
        QCOMPARE(closed.count(), 2);
        QCOMPARE(ok.count(), 0);
    }

    void blocksWhatIsBehind() {
        QSignalSpy touched(behind, &WidgetButton::touched);
        const QPoint place = centreOf(behind);
        DialogForm dialog(window.get());

        // A finger that lies on the button already does not set it off either.
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, place);
        dialog.show();
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, place);
        touch(place);
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Tab, Qt::Key_A})
            QTest::keyClick(window->windowHandle(), key);
        QCOMPARE(touched.count(), 0);
        QCOMPARE(entry->text(), QString());
        QVERIFY(dialog.isVisible());

        dialog.setBackgroundDisabled(false);
        touch(place);
        QCOMPARE(touched.count(), 1);

        dialog.hide();
        QTest::keyClick(window->windowHandle(), 'a');
        QCOMPARE(entry->text(), QStringLiteral("a"));
        touch(place);
        QCOMPARE(touched.count(), 2);
    }

    void isAloneInItsWindow() {
        auto* screen = new QWidget(window.get());
        screen->setGeometry(window->rect());
        screen->show();
        DialogForm first(window.get());
        DialogForm second(screen);
        WaitForm third(window.get());
        QSignalSpy firstClosed(&first, &DialogForm::closePopup);
        first.show();
        second.show();
        QVERIFY(!first.isVisible());
        QCOMPARE(firstClosed.count(), 1);
        QCOMPARE(DialogOverlay::current(behind), static_cast<DialogOverlay*>(&second));
        third.show();
        QVERIFY(!second.isVisible());
        third.hide();
        QVERIFY(!DialogOverlay::current(window.get()));

        // It goes with its screen, and does not come back with it.
        second.show();
        screen->hide();
        screen->show();
        QVERIFY(!second.isVisible());
    }

    void leavesWithTheScreenWhenAsked() {
        DialogForm dialog(window.get());
        dialog.show();
        dialog.windowChanged();
        QVERIFY(dialog.isVisible());
        dialog.checkWindowChange(true);
        dialog.windowChanged();
        QVERIFY(!dialog.isVisible());

        QPointer<DialogForm> once = new DialogForm(window.get());
        once->setDeleteOnClose(true);
        once->show();
        once->hide();
        QTRY_VERIFY(!once);
    }

    void staysCentredAroundItsTexts() {
        DialogForm dialog(window.get());
        auto* later = new QWidget(window.get());
        later->setGeometry(window->rect());
        later->show();
        dialog.show();
        dialog.setIcon(DialogForm::Icon::Error);
        int lastHeight = 0;
        for (const QString& text :
             {QStringLiteral("One"), QStringLiteral("One\nTwo"),
              QStringLiteral("One\nTwo<br>A third one that is so long that it takes two lines, or "
                             "rather three, if not four of them")}) {
            dialog.setText(script(text));
            const auto* ok = dialog.findChild<QWidget*>(QStringLiteral("dialogOkButton"));
            const auto* label = dialog.findChild<QLabel*>(QStringLiteral("dialogText"));
            const QRect card = ok->parentWidget()->geometry();
            QVERIFY(qAbs(card.center().y() - dialog.rect().center().y()) <= 1);
            QVERIFY(card.height() > lastHeight);
            lastHeight = card.height();
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(label->geometry().bottom() < ok->y());
            QCOMPARE(window->childAt(window->mapFromGlobal(ok->mapToGlobal(QPoint(9, 9)))), ok);
        }
        window->resize(400, 700);
        QCOMPARE(dialog.size(), window->size());
    }

    void showsProgress() {
        WaitForm wait(window.get());
        wait.setText(script(QStringLiteral("Exporting")));
        wait.show();
        const int height =
            wait.findChild<QLabel*>(QStringLiteral("dialogText"))->parentWidget()->height();
        wait.setProgress(164);
        const auto* percent = wait.findChild<QLabel*>(QStringLiteral("waitPercent"));
        QCOMPARE(percent->text(), QStringLiteral("100%"));
        QVERIFY(percent->parentWidget()->height() > height);
        wait.setProgress(-1);
        QVERIFY(!percent->isVisible());
        QCOMPARE(percent->parentWidget()->height(), height);
    }

 private:
    DeviceRoot root;

    /// Where the window is touched to touch @p widget.
    QPoint centreOf(const QWidget* widget) const {
        return widget->mapTo(window.get(), widget->rect().center());
    }
    void touch(const QPoint& place) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }

    std::unique_ptr<QWidget> window;
    WidgetButton* behind = nullptr;
    QLineEdit* entry = nullptr;
};

QTEST_MAIN(UiDialogsTest)
#include "ui_dialogs_test.moc"
