#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <functional>
#include <memory>

#include "sim/device_root.h"
#include "ui/input_field.h"
#include "ui/theme.h"
#include "ui/touch_key.h"
#include "ui/touch_key_form.h"

Q_DECLARE_METATYPE(std::function<void()>)

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

    void composesHangul_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("open");
        QTest::newRow("syllables")
            << QStringLiteral("ㅎㅏㄴㄱㅡㄹ") << QStringLiteral("한") << QStringLiteral("글");
        QTest::newRow("double vowel")
            << QStringLiteral("ㅇㅗㅏㅣ") << QStringLiteral("와") << QStringLiteral("ㅣ");
        QTest::newRow("double final")
            << QStringLiteral("ㄷㅏㄹㄱ") << QStringLiteral("") << QStringLiteral("닭");
        QTest::newRow("half of a double final moves on")
            << QStringLiteral("ㄷㅏㄹㄱㅏ") << QStringLiteral("달") << QStringLiteral("가");
        QTest::newRow("final moves on")
            << QStringLiteral("ㄱㅏㄱㅏ") << QStringLiteral("가") << QStringLiteral("가");
        QTest::newRow("shift holds for one letter")
            << QStringLiteral("^ㄱㅏㄱㄱㅏ") << QStringLiteral("깍") << QStringLiteral("가");
        QTest::newRow("shift is locked")
            << QStringLiteral("^^ㄱㅏㄱㅅㅏ") << QStringLiteral("깎") << QStringLiteral("싸");
        QTest::newRow("backspace takes letter by letter")
            << QStringLiteral("ㄷㅏㄹㄱ<<") << QStringLiteral("") << QStringLiteral("다");
        QTest::newRow("and then syllable by syllable")
            << QStringLiteral("ㄴㅏㄹㄱㅏ<<<") << QStringLiteral("") << QStringLiteral("");
        QTest::newRow("space ends the syllable")
            << QStringLiteral("ㄱㅏ ㄴ") << QStringLiteral("가 ") << QStringLiteral("ㄴ");
        QTest::newRow("another page ends it")
            << QStringLiteral("ㄱㅏAb^cHㄴ") << QStringLiteral("가bC") << QStringLiteral("ㄴ");
        QTest::newRow("symbols end it")
            << QStringLiteral("ㄱㅏ!1^[") << QStringLiteral("가1[") << QStringLiteral("");
        QTest::newRow("option ends it")
            << QStringLiteral("ㄱㅏ@ㅏ") << QStringLiteral("가com") << QStringLiteral("ㅏ");
    }

    void composesHangul() {
        QFETCH(QString, keys);
        keypad->setOption(QStringLiteral("com"));
        keypad->edit(field);
        tap(keys);
        QTEST(field->text(), "text");
        QTEST(field->preedit(), "open");
        const QString all = field->text() + field->preedit();
        tap(QStringLiteral("D"));
        QCOMPARE(field->text(), all);
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
        const QPoint place = centreOf(key(QStringLiteral("key_backspace")));
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, place);
        QTRY_VERIFY(field->text().size() < 9);
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, place);
        QVERIFY(!field->text().isEmpty());
        tap(QStringLiteral("C5D"));
        QCOMPARE(field->text(), QStringLiteral("5"));
        QVERIFY(keypad->isHidden());
        QVERIFY(!field->isEditing());
        QCOMPARE(finished.count(), 1);
    }

    void offersThePagesOfTheField_data() {
        QTest::addColumn<InputField::Characters>("characters");
        QTest::addColumn<bool>("hangulFirst");
        QTest::addColumn<QString>("keys");
        const auto row = [](const char* name, InputField::Characters characters, bool hangulFirst,
                            const char* keys) {
            QTest::newRow(name) << characters << hangulFirst << QString::fromUtf8(keys);
        };
        row("any", InputField::Any, true, "ㅂ latin symbols .");
        row("any, Latin first", InputField::Any, false, "q hangul symbols .");
        row("Latin", InputField::Latin, true, "q symbols .");
        row("digits", InputField::Digits, true, "1");
        row("address", InputField::Address, true, "1 .");
        row("time range", InputField::TimeRange, true, "1");
        row("date", InputField::Date, true, "1");
    }

    void offersThePagesOfTheField() {
        QFETCH(InputField::Characters, characters);
        QFETCH(bool, hangulFirst);
        field->setAllowedCharacters(characters);
        keypad->setHangulFirst(hangulFirst);
        keypad->edit(field);
        QStringList shown;
        for (const char* name : {"1", "q", "ㅂ", "latin", "hangul", "symbols", "."})
            if (key(QLatin1String("key_") + QString::fromUtf8(name)))
                shown += QString::fromUtf8(name);
        QTEST(shown.join(QLatin1Char(' ')), "keys");
    }

    /// On every page each place belongs to one key at most, and each key is large enough.
    void leavesRoomForTheFinger_data() {
        QTest::addColumn<InputField::Characters>("characters");
        QTest::addColumn<QString>("keys");
        QTest::newRow("digits") << InputField::Address << QStringLiteral("");
        QTest::newRow("hangul") << InputField::Any << QStringLiteral("");
        QTest::newRow("latin") << InputField::Any << QStringLiteral("A");
        QTest::newRow("symbols") << InputField::Any << QStringLiteral("!");
        QTest::newRow("more symbols") << InputField::Any << QStringLiteral("!^");
    }

    void leavesRoomForTheFinger() {
        QFETCH(InputField::Characters, characters);
        QFETCH(QString, keys);
        field->setAllowedCharacters(characters);
        keypad->edit(field);
        keypad->setOption(QStringLiteral(".com"));
        tap(keys);
        QRegion taken;
        QStringList names;
        const auto all = keypad->findChildren<TouchKey*>();
        for (const TouchKey* one : all) {
            if (!one->isVisible())
                continue;
            QVERIFY2(one->width() >= 48 && one->height() >= 48, qPrintable(one->objectName()));
            QVERIFY(keypad->rect().contains(one->geometry()));
            QVERIFY2(!taken.intersects(one->geometry()), qPrintable(one->objectName()));
            QVERIFY2(!names.contains(one->objectName()), qPrintable(one->objectName()));
            taken += one->geometry();
            names += one->objectName();
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

    void endsWithTheField_data() {
        QTest::addColumn<std::function<void()>>("end");
        QTest::newRow("screen hidden") << std::function<void()>([this] { screen->hide(); });
        QTest::newRow("field hidden") << std::function<void()>([this] { low->hide(); });
        QTest::newRow("disabled") << std::function<void()>([this] { screen->setEnabled(false); });
        QTest::newRow("keypad hidden") << std::function<void()>([this] { keypad->hide(); });
        QTest::newRow("field deleted") << std::function<void()>([this] { delete low; });
        QTest::newRow("screen deleted") << std::function<void()>([this] { delete screen; });
    }

    void endsWithTheField() {
        QFETCH(std::function<void()>, end);
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
            return;
        screen->setEnabled(true);
        screen->show();
        keypad->edit(field);
        tap(QStringLiteral("ㄱD"));
        QCOMPARE(field->text(), QStringLiteral("ㄱ"));
    }

 private:
    /// The key of that name on the page that is shown.
    TouchKey* key(const QString& name) const {
        auto* found = keypad->findChild<TouchKey*>(name);
        return found && found->isVisible() ? found : nullptr;
    }
    /// Where the window is touched to touch @p widget.
    QPoint centreOf(const QWidget* widget) const {
        return widget->mapTo(window.get(), widget->rect().center());
    }
    /// Touches one key after the other: characters by themselves, < for backspace, ^ for shift, @
    /// for the option, C for clear, D for done, V for hide, A, H and ! for the other pages.
    void tap(const QString& keys) {
        const QString signs = QStringLiteral("<^@CDVAH! ");
        const QStringList names{QStringLiteral("backspace"), QStringLiteral("shift"),
                                QStringLiteral("option"),    QStringLiteral("clear"),
                                QStringLiteral("done"),      QStringLiteral("hide"),
                                QStringLiteral("latin"),     QStringLiteral("hangul"),
                                QStringLiteral("symbols"),   QStringLiteral("space")};
        for (const QChar& touched : keys) {
            const QString name =
                QStringLiteral("key_") + names.value(signs.indexOf(touched), touched);
            const TouchKey* target = key(name);
            QVERIFY2(target, qPrintable(name));
            QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, centreOf(target));
            QCoreApplication::processEvents();
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
