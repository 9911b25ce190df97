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
        const std::pair<const char*, const char*> rows[] = {
            {"ㅎㅏㄴㄱㅡㄹ", "한|글"},
            {"ㅇㅗㅏㅣ", "와|ㅣ"},
            // A second final consonant, and how it or the only one goes over to the next syllable.
            {"ㄷㅏㄹㄱ", "|닭"},
            {"ㄷㅏㄹㄱㅏ", "달|가"},
            {"ㄱㅏㄱㅏ", "가|가"},
            // Shift holds for one letter, touched twice it is locked.
            {"^ㄱㅏㄱㄱㅏ", "깍|가"},
            {"^^ㄱㅏㄱㅅㅏ", "깎|싸"},
            // Backspace takes letter by letter, and then syllable by syllable.
            {"ㄷㅏㄹㄱ<<", "|다"},
            {"ㄴㅏㄹㄱㅏ<<<", "|"},
            // What ends a syllable: space, another page, a symbol, the option.
            {"ㄱㅏ ㄴ", "가 |ㄴ"},
            {"ㄱㅏAb^cHㄴ", "가bC|ㄴ"},
            {"ㄱㅏ!1^[", "가1[|"},
            {"ㄱㅏ@ㅏ", "가com|ㅏ"},
        };
        for (const auto& [keys, shown] : rows) {
            field->clear();
            keypad->edit(field);
            keypad->setOption(u("com"));
            QCOMPARE(type(keys), u(shown));
            QCOMPARE(type("D"), u(shown).remove(QLatin1Char('|')) + QLatin1Char('|'));
        }
    }

    void countsSyllables() {
        field->setMaxLength(2);
        keypad->edit(field);
        QCOMPARE(type("ㄷㅏㄹㄱㅏㅂㅅ"), u("달|값"));
        // There is no room for the syllable that would begin; what is typed stays as it is.
        QCOMPARE(type("ㅏㅇ"), u("달|값"));
        QCOMPARE(type("<<ㅁAxD"), u("달감|"));
    }

    void startsAfreshWhenTheTextIsReplaced() {
        keypad->edit(field);
        type("ㄱㅏ");
        field->setText(u("x"));
        QCOMPARE(type("ㄴ"), u("x|ㄴ"));
        field->clear();
        QCOMPARE(type("<ㄷ"), u("|ㄷ"));
    }

    void typesDigits() {
        field->setAllowedCharacters(InputField::Digits);
        QSignalSpy finished(field, &InputField::editingFinished);
        keypad->edit(field);
        QVERIFY(!key(u("option")));
        keypad->setOption(u("010"));
        QCOMPARE(type("@123456789"), u("010123456789|"));
        QCOMPARE(type("<"), u("01012345678|"));
        Finger finger(window.get());
        finger.down(key(u("backspace")));
        QTRY_VERIFY(field->text().size() < 9);
        finger.up();
        QVERIFY(!field->text().isEmpty());
        QCOMPARE(type("C5D"), u("5|"));
        QVERIFY(keypad->isHidden() && !field->isEditing());
        QCOMPARE(finished.count(), 1);
    }

    void offersThePagesOfTheField() {
        const std::tuple<InputField::Characters, bool, const char*> rows[] = {
            {InputField::Any, true, "ㅂ latin symbols ."},
            {InputField::Any, false, "q hangul symbols ."},
            {InputField::Latin, true, "q symbols ."},
            {InputField::Digits, true, "1"},
            {InputField::Address, true, "1 ."},
            {InputField::TimeRange, true, "1"},
            {InputField::Date, true, "1"},
        };
        for (const auto& [characters, hangulFirst, keys] : rows) {
            field->setAllowedCharacters(characters);
            keypad->setHangulFirst(hangulFirst);
            keypad->edit(field);
            QStringList shown;
            for (const QString& name : u("1 q ㅂ latin hangul symbols .").split(u(" "))) {
                if (key(name))
                    shown.append(name);
            }
            QCOMPARE(shown.join(u(" ")), u(keys));
        }
    }

    void keepsTheFieldInSight() {
        for (InputField* one : {low, field, low}) {
            keypad->edit(one);
            QVERIFY(low->isEditing() == (one == low) && field->isEditing() == (one == field));
            QVERIFY(bottom(one) <= keypad->y());
            QCOMPARE(screen->y() < 0, one == low);
        }
        type("V");
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
            QVERIFY(bottom(late) <= keypad->y());
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
            type("ㅎㅏㄴ");
            end();
            QVERIFY(keypad->isHidden());
            QVERIFY(!moved || moved->y() == 0);
            if (edited) {
                QVERIFY(!edited->isEditing());
                QCOMPARE(finished.count(), 1);
                QCOMPARE(edited->text(), u("한"));
            }
            if (!moved)
                continue;
            screen->setEnabled(true);
            screen->show();
            keypad->edit(field);
            QCOMPARE(type("ㄱD"), u("ㄱ|"));
        }
    }

 private:
    static QString u(const char* text) { return QString::fromUtf8(text); }
    static int bottom(const InputField* one) {
        return one->mapTo(one->window(), QPoint(0, one->height())).y();
    }
    /// The key of that name on the page that is shown.
    TouchKey* key(const QString& name) const {
        auto* found = keypad->findChild<TouchKey*>(u("key_") + name);
        return found && found->isVisible() ? found : nullptr;
    }
    /// Touches one key after the other: characters by themselves, < for backspace, ^ for shift, @
    /// for the option, C for clear, D for done, V for hide, A, H and ! for the other pages. What
    /// the field holds then, and behind a bar the open syllable.
    QString type(const char* keys) const {
        static const QStringList names =
            u("backspace shift option clear done hide latin hangul symbols space").split(u(" "));
        for (const QChar& touched : u(keys)) {
            const QString name = names.value(u("<^@CDVAH! ").indexOf(touched), touched);
            if (key(name) == nullptr)
                return u("no key ") + name;
            Finger(window.get()).tap(key(name));
        }
        return field->text() + QLatin1Char('|') + field->preedit();
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
