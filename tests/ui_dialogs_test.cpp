#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <memory>

#include "sim/device_root.h"
#include "tests/support/finger.h"
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
        const auto* okButton = dialog.findChild<QWidget*>(QStringLiteral("dialogOkButton"));
        const auto* cancelButton = dialog.findChild<QWidget*>(QStringLiteral("dialogCancelButton"));
        // A handler may ask the next question with the same dialog.
        connect(&dialog, &DialogForm::touchOk, &dialog, &QWidget::show);
        dialog.show();
        for (const int type : {0, 16, 272}) {
            dialog.setButtonType(type);
            QCOMPARE(okButton->isVisible(), type != 0);
            QCOMPARE(cancelButton->isVisible(), type == 272);
        }
        Finger finger(window.get());
        finger.tap(okButton);
        QVERIFY(dialog.isVisible());
        QCOMPARE(ok.count(), 1);
        QCOMPARE(cancel.count() + closed.count(), 0);
        finger.tap(cancelButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(ok.count(), 1);
        QCOMPARE(cancel.count(), 1);
        QCOMPARE(closed.count(), 1);
    }

    void closesByItself() {
        DialogForm dialog(window.get(), 1);
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

    void blocksWhatIsBehind() {
        QSignalSpy touched(behind, &WidgetButton::touched);
        Finger finger(window.get());
        DialogForm dialog(window.get());
        // A finger that lies on the button already does not set it off either.
        finger.down(behind);
        dialog.show();
        finger.up();
        finger.tap(behind);
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Tab, Qt::Key_A})
            QTest::keyClick(window->windowHandle(), key);
        QCOMPARE(touched.count(), 0);
        QCOMPARE(entry->text(), QString());
        QVERIFY(dialog.isVisible());

        dialog.setBackgroundDisabled(false);
        finger.tap(behind);
        QCOMPARE(touched.count(), 1);
        dialog.hide();
        QTest::keyClick(window->windowHandle(), 'a');
        QCOMPARE(entry->text(), QStringLiteral("a"));
        finger.tap(behind);
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

    void growsAroundItsTexts() {
        DialogForm dialog(window.get());
        dialog.show();
        dialog.setIcon(DialogForm::Icon::Error);
        const auto* ok = dialog.findChild<QWidget*>(QStringLiteral("dialogOkButton"));
        const auto* label = dialog.findChild<QLabel*>(QStringLiteral("dialogText"));
        int lastHeight = 0;
        for (const char* text : {"One", "One\nTwo",
                                 "One\nTwo<br>A third one that is so long that it takes two lines, "
                                 "or rather three, if not four of them"}) {
            dialog.setText(script(QLatin1String(text)));
            const QRect card = ok->parentWidget()->geometry();
            QVERIFY(qAbs(card.center().y() - dialog.rect().center().y()) <= 1);
            QVERIFY(card.height() > lastHeight);
            lastHeight = card.height();
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(label->geometry().bottom() < ok->y());
        }
        window->resize(400, 700);
        QCOMPARE(dialog.size(), window->size());
    }

    void showsProgress() {
        WaitForm wait(window.get());
        wait.setText(script(QStringLiteral("Exporting")));
        wait.show();
        const auto* percent = wait.findChild<QLabel*>(QStringLiteral("waitPercent"));
        const int height = percent->parentWidget()->height();
        wait.setProgress(164);
        QCOMPARE(percent->text(), QStringLiteral("100%"));
        QVERIFY(percent->parentWidget()->height() > height);
        wait.setProgress(-1);
        QVERIFY(!percent->isVisible());
        QCOMPARE(percent->parentWidget()->height(), height);
    }

 private:
    DeviceRoot root;
    std::unique_ptr<QWidget> window;
    WidgetButton* behind = nullptr;
    QLineEdit* entry = nullptr;
};

QTEST_MAIN(UiDialogsTest)
#include "ui_dialogs_test.moc"
