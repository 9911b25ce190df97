#include <QPointer>
#include <QSignalSpy>
#include <functional>
#include <memory>

#include "sim/device_root.h"
#include "tests/support/finger.h"
#include "ui/dialog_form.h"
#include "ui/input_field.h"
#include "ui/scroll_list.h"
#include "ui/theme.h"
#include "ui/touch_key.h"
#include "ui/touch_key_form.h"

class UiKeypadTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        window = std::make_unique<QWidget>();
        window->resize(Theme::kScreenWidth, Theme::kScreenHeight);
        screen = new QWidget(window.get());
        screen->setGeometry(window->rect());
        auto* row = new QWidget(screen);
        row->setGeometry(16, 700, 448, 76);
        low = new InputField(row);
        low->setGeometry(200, 10, 232, 56);
        field = new InputField(screen);
        field->setGeometry(16, 100, 232, 56);
        keypad = new TouchKeyForm(window.get());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() { window.reset(); }

    void composesHangul() {
        const struct {
            const char* keys;
            const char* text;
            const char* open;
        } cases[] = {
            {"ㅎㅏㄴㄱㅡㄹ", "한", "글"},
            {"ㅇㅗㅏㅣ", "와", "ㅣ"},
            // A second final consonant, and how it or the only one goes over to the next syllable.
            {"ㄷㅏㄹㄱ", "", "닭"},
            {"ㄷㅏㄹㄱㅏ", "달", "가"},
            {"ㄱㅏㄱㅏ", "가", "가"},
            // Shift holds for one letter, touched twice it is locked.
            {"^ㄱㅏㄱㄱㅏ", "깍", "가"},
            {"^^ㄱㅏㄱㅅㅏ", "깎", "싸"},
            // Backspace takes letter by letter, and then syllable by syllable.
            {"ㄷㅏㄹㄱ<<", "", "다"},
            {"ㄴㅏㄹㄱㅏ<<<", "", ""},
            // What ends a syllable: space, another page, a symbol, the option.
            {"ㄱㅏ ㄴ", "가 ", "ㄴ"},
            {"ㄱㅏAb^cHㄴ", "가bC", "ㄴ"},
            {"ㄱㅏ!1^[", "가1[", ""},
            {"ㄱㅏ@ㅏ", "가com", "ㅏ"},
        };
        for (const auto& one : cases) {
            field->clear();
            keypad->edit(field);
            keypad->setOption(QStringLiteral("com"));
            tap(QString::fromUtf8(one.keys));
            QCOMPARE(field->text(), QString::fromUtf8(one.text));
            QCOMPARE(field->preedit(), QString::fromUtf8(one.open));
            tap(QStringLiteral("D"));
            QCOMPARE(field->text(), QString::fromUtf8(one.text) + QString::fromUtf8(one.open));
        }
    }

    void countsSyllables() {
        field->setMaxLength(2);
        keypad->edit(field);
        tap(QStringLiteral("ㄷㅏㄹㄱㅏㅂㅅ"));
        QCOMPARE(field->text() + field->preedit(), QStringLiteral("달값"));
        // There is no room for the syllable that would begin; what is typed stays as it is.
        tap(QStringLiteral("ㅏㅇ"));
        QCOMPARE(field->text() + field->preedit(), QStringLiteral("달값"));
        tap(QStringLiteral("<<ㅁAxD"));
        QCOMPARE(field->text(), QStringLiteral("달감"));
    }

    void startsAfreshWhenTheTextIsReplaced() {
        keypad->edit(field);
        tap(QStringLiteral("ㄱㅏ"));
        field->setText(QStringLiteral("x"));
        tap(QStringLiteral("ㄴ"));
        QCOMPARE(field->text() + field->preedit(), QStringLiteral("xㄴ"));
        field->clear();
        tap(QStringLiteral("<ㄷ"));
        QCOMPARE(field->preedit(), QStringLiteral("ㄷ"));
    }

    void typesDigits() {
        field->setAllowedCharacters(InputField::Digits);
        QSignalSpy finished(field, &InputField::editingFinished);
        keypad->edit(field);
        QVERIFY(!key(QStringLiteral("key_option")));
        keypad->setOption(QStringLiteral("010"));
        tap(QStringLiteral("@123456789"));
        QCOMPARE(field->text(), QStringLiteral("010123456789"));
        tap(QStringLiteral("<"));
        QCOMPARE(field->text().size(), 11);
        Finger finger(window.get());
        finger.down(key(QStringLiteral("key_backspace")));
        QTRY_VERIFY(field->text().size() < 9);
        finger.up();
        QVERIFY(!field->text().isEmpty());
        tap(QStringLiteral("C5D"));
        QCOMPARE(field->text(), QStringLiteral("5"));
        QVERIFY(keypad->isHidden());
        QVERIFY(!field->isEditing());
        QCOMPARE(finished.count(), 1);
    }

    void offersThePagesOfTheField() {
        const struct {
            InputField::Characters characters;
            bool hangulFirst;
            const char* keys;
        } cases[] = {
            {InputField::Any, true, "ㅂ latin symbols ."},
            {InputField::Any, false, "q hangul symbols ."},
            {InputField::Latin, true, "q symbols ."},
            {InputField::Digits, true, "1"},
            {InputField::Address, true, "1 ."},
            {InputField::TimeRange, true, "1"},
            {InputField::Date, true, "1"},
        };
        for (const auto& one : cases) {
            field->setAllowedCharacters(one.characters);
            keypad->setHangulFirst(one.hangulFirst);
            keypad->edit(field);
            QStringList shown;
            for (const char* name : {"1", "q", "ㅂ", "latin", "hangul", "symbols", "."})
                if (key(QLatin1String("key_") + QString::fromUtf8(name)))
                    shown += QString::fromUtf8(name);
            QCOMPARE(shown.join(QLatin1Char(' ')), QString::fromUtf8(one.keys));
        }
    }

    void keepsTheFieldInSight() {
        const auto bottom = [](const InputField* one) {
            return one->mapTo(one->window(), one->rect().bottomLeft()).y();
        };
        keypad->edit(low);
        QVERIFY(bottom(low) < keypad->y());
        keypad->edit(field);
        QVERIFY(!low->isEditing() && field->isEditing());
        QCOMPARE(screen->y(), 0);
        keypad->edit(low);
        QVERIFY(bottom(low) < keypad->y());
        tap(QStringLiteral("V"));
        QVERIFY(keypad->isHidden());
        QCOMPARE(screen->y(), 0);
    }

    void scrollsTheListRatherThanTheScreen() {
        auto* list = new ScrollList(screen);
        list->setGeometry(0, 72, 480, 700);  // ends above the screen's end
        auto* rows = new QWidget;
        rows->resize(480, 1400);
        list->setWidget(rows);
        list->show();
        InputField::setKeypad([this](InputField* touched) { keypad->edit(touched); });
        for (const int top : {620, 1320}) {
            auto* late = new InputField(rows);
            late->setGeometry(200, top, 232, 56);
            late->show();
            list->ensureWidgetVisible(late);
            Finger(window.get()).tap(late);
            QVERIFY(late->isEditing() && keypad->isVisible());
            const int end = late->mapTo(window.get(), QPoint(0, late->height())).y();
            QVERIFY2(end <= keypad->y(), qPrintable(QString::number(end)));
            QCOMPARE(screen->y(), 0);
            QCOMPARE(list->viewport()->height(), keypad->y() - 72);
        }
        delete list;
        QVERIFY(keypad->isHidden());
        InputField::setKeypad(nullptr);
    }

    void endsWithTheField() {
        const std::function<void()> ends[] = {[this] { screen->hide(); },
                                              [this] { low->hide(); },
                                              [this] { screen->setEnabled(false); },
                                              [this] { keypad->hide(); },
                                              [this] { (new DialogForm(screen))->show(); },
                                              [this] { delete low; },
                                              [this] { delete screen; }};
        for (const auto& end : ends) {
            init();
            const QPointer<InputField> edited = low;
            const QPointer<QWidget> moved = screen;
            QSignalSpy finished(low, &InputField::editingFinished);
            keypad->edit(low);
            tap(QStringLiteral("ㅎㅏㄴ"));
            end();
            QVERIFY(keypad->isHidden());
            QVERIFY(!moved || moved->y() == 0);
            if (edited) {
                QVERIFY(!edited->isEditing());
                QCOMPARE(finished.count(), 1);
                QCOMPARE(edited->text(), QStringLiteral("한"));
            }
            if (!moved)
                continue;
            screen->setEnabled(true);
            screen->show();
            keypad->edit(field);
            tap(QStringLiteral("ㄱD"));
            QCOMPARE(field->text(), QStringLiteral("ㄱ"));
        }
    }

 private:
    /// The key of that name on the page that is shown.
    TouchKey* key(const QString& name) const {
        auto* found = keypad->findChild<TouchKey*>(name);
        return found && found->isVisible() ? found : nullptr;
    }
    /// Touches one key after the other: characters by themselves, < for backspace, ^ for shift, @
    /// for the option, C for clear, D for done, V for hide, A, H and ! for the other pages.
    void tap(const QString& keys) {
        const QString signs = QStringLiteral("<^@CDVAH! ");
        const QStringList names =
            QStringLiteral("backspace shift option clear done hide latin hangul symbols space")
                .split(QLatin1Char(' '));
        for (const QChar& touched : keys) {
            const QString name =
                QStringLiteral("key_") + names.value(signs.indexOf(touched), touched);
            const TouchKey* target = key(name);
            QVERIFY2(target, qPrintable(name));
            Finger(window.get()).tap(target);
        }
    }

    DeviceRoot root;
    std::unique_ptr<QWidget> window;
    QWidget* screen = nullptr;
    InputField* field = nullptr;  // in the upper half
    InputField* low = nullptr;    // where the keypad comes up
    TouchKeyForm* keypad = nullptr;
};

QTEST_MAIN(UiKeypadTest)
#include "ui_keypad_test.moc"
