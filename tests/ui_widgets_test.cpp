#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

#include "tests/support/text_recorder.h"
#include "ui/check_box.h"
#include "ui/code_entry.h"
#include "ui/combo.h"
#include "ui/key_click.h"
#include "ui/label_button.h"
#include "ui/list_row.h"
#include "ui/pick_list.h"
#include "ui/plus_minus.h"
#include "ui/scroll_list.h"
#include "ui/text_fit.h"
#include "ui/toggle.h"
#include "ui/top_bar.h"

namespace {

QString u(const char* text) {
    return QString::fromUtf8(text);
}

/// A text is its own key.
ScriptHandler::Script sameText(const QString& key) {
    ScriptHandler::Script script;
    script.script = key;
    script.fontFamily = QStringLiteral("Noto Sans CJK KR");
    return script;
}

/// A finger on a shown window. It goes through the window, so the widget below it is found and
/// keeps the touch as it does on the terminal.
class Finger {
 public:
    explicit Finger(QWidget* window) : window_(window) {}

    void down(const QPoint& at) { QTest::mousePress(handle(), Qt::LeftButton, {}, at_ = at); }
    void down(const QWidget* on) { down(on->mapTo(window_, on->rect().center())); }
    void move(int dx, int dy) {
        constexpr int kSteps = 4;
        const QPoint start = at_;
        for (int i = 1; i <= kSteps; ++i)
            QTest::mouseMove(handle(), at_ = start + QPoint(dx * i / kSteps, dy * i / kSteps));
    }
    void up() { QTest::mouseRelease(handle(), Qt::LeftButton, {}, at_); }
    void tap(const QWidget* on) {
        down(on);
        up();
    }

 private:
    QWindow* handle() const { return window_->windowHandle(); }

    QWidget* window_;
    QPoint at_;
};

}  // namespace

class UiWidgetsTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() { qputenv("ZEL_ROOT", QFile::encodeName(root_.path())); }
    void init() {
        window_ = std::make_unique<QWidget>();
        window_->resize(480, 800);
        clicks_ = 0;
        KeyClick::setHandler([this] { ++clicks_; });
    }
    void cleanup() {
        KeyClick::setHandler({});
        window_.reset();
    }

    void buttonTakesOneTouch();
    void buttonRunsItsActionOnce();
    void plusMinusRepeats();
    void controlsChange();
    void comboPicks();
    void topBarHoldsItsActions();
    void listTellsTapFromScroll();
    void listShowsFieldAboveKeypad();
    void rowMakesRoomForItsControl();
    void timeRangeIsFormatted();
    void fieldRefusesWhatIsNotAllowed_data();
    void fieldRefusesWhatIsNotAllowed();
    void fieldComposes();
    void textsGiveWay();

 private:
    template <class Widget>
    Widget* add(int x, int y, int width, int height) {
        auto* widget = new Widget(window_.get());
        widget->setGeometry(x, y, width, height);
        return widget;
    }
    void show() {
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    }

    QTemporaryDir root_;
    std::unique_ptr<QWidget> window_;
    int clicks_ = 0;
};

void UiWidgetsTest::buttonTakesOneTouch() {
    auto* button = add<LabelButton>(100, 100, 144, 72);
    show();
    Finger finger(window_.get());
    QSignalSpy touched(button, &WidgetButton::touched);

    finger.down(button);
    QVERIFY(button->isDown());
    QCOMPARE(clicks_, 1);
    QCOMPARE(touched.count(), 0);
    finger.up();
    QCOMPARE(touched.count(), 1);

    finger.down(button);
    finger.move(0, 100);
    QVERIFY(!button->isDown());
    finger.up();
    QCOMPARE(touched.count(), 1);

    finger.down(button);
    button->setEnabled(false);
    finger.up();
    finger.tap(button);
    QCOMPARE(touched.count(), 1);
    QCOMPARE(clicks_, 3);
}

void UiWidgetsTest::buttonRunsItsActionOnce() {
    auto* button = add<LabelButton>(100, 100, 144, 72);
    show();
    int runs = 0;
    connect(button, &WidgetButton::touched, this, [&] {
        ++runs;
        QTest::mouseClick(button, Qt::LeftButton);
        QCoreApplication::processEvents();
        QTest::mouseClick(button, Qt::LeftButton);
    });
    QTest::mouseClick(button, Qt::LeftButton);
    // Still before the event loop runs again.
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(runs, 1);
    QCOMPARE(clicks_, 1);
    QCoreApplication::processEvents();
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(runs, 2);

    // An action may delete its button.
    auto* last = new LabelButton(window_.get());
    connect(last, &WidgetButton::touched, this, [last] { delete last; });
    QTest::mouseClick(last, Qt::LeftButton);
}

void UiWidgetsTest::plusMinusRepeats() {
    auto* number = add<PlusMinus>(100, 100, 208, 56);
    number->setMinimum(1);
    number->setMaximum(8);
    QCOMPARE(number->value(), 1);
    show();
    Finger finger(window_.get());
    auto* plus = number->findChild<LabelButton*>(QStringLiteral("plusButton"));
    auto* minus = number->findChild<LabelButton*>(QStringLiteral("minusButton"));
    QVERIFY(minus->isLimited());

    finger.tap(plus);
    QCOMPARE(number->value(), 2);
    QVERIFY(!minus->isLimited());

    finger.down(plus);
    QTRY_VERIFY(number->value() >= 4);
    const int held = number->value();
    finger.up();
    QCOMPARE(number->value(), held);

    finger.down(plus);
    QTRY_COMPARE(number->value(), 8);
    QVERIFY(plus->isLimited());
    finger.up();
    QSignalSpy changed(number, &PlusMinus::valueChanged);
    finger.tap(plus);
    QCOMPARE(clicks_, 4);
    QCOMPARE(changed.count(), 0);
    number->setMaximum(5);
    QCOMPARE(number->value(), 5);
}

void UiWidgetsTest::controlsChange() {
    auto* toggle = add<Toggle>(0, 0, 226, 56);
    auto* box = add<CheckBox>(0, 100, 300, 56);
    show();
    Finger finger(window_.get());
    QSignalSpy chosen(toggle, &Toggle::currentIndexChanged);
    finger.down(QPoint(200, 20));
    finger.up();
    QCOMPARE(toggle->currentIndex(), 1);
    finger.down(QPoint(200, 20));
    finger.up();
    QCOMPARE(chosen.count(), 1);
    finger.down(QPoint(20, 20));
    finger.up();
    QCOMPARE(toggle->currentIndex(), 0);

    finger.down(QPoint(280, 128));  // on the label
    finger.up();
    QVERIFY(box->isChecked());
}

void UiWidgetsTest::comboPicks() {
    auto* screen = add<QWidget>(0, 0, 480, 800);
    auto* combo = new Combo(screen);
    combo->setGeometry(100, 0, 208, 56);
    QStringList keys;
    for (int i = 0; i < 20; ++i)
        keys.append(QString::number(i));
    combo->setItemKeys(keys);
    combo->applyScripts(sameText);
    combo->setCurrentIndex(18);
    combo->setCurrentIndex(20);
    QCOMPARE(combo->currentText(), u("18"));
    show();
    Finger finger(window_.get());
    const auto list = [this] { return window_->findChild<PickList*>(); };

    finger.tap(combo);
    QVERIFY(list());
    auto* chosen = list()->findChild<WidgetButton*>(u("item18"));
    QVERIFY2(!chosen->visibleRegion().isEmpty(), "the choice is scrolled into view");
    QSignalSpy changed(combo, &Combo::currentIndexChanged);
    QTest::mouseClick(list()->findChild<WidgetButton*>(u("item17")), Qt::LeftButton);
    QTRY_VERIFY(!list());
    QCOMPARE(combo->currentIndex(), 17);
    QCOMPARE(changed.count(), 1);

    finger.tap(combo);
    finger.down(QPoint(5, 5));
    finger.up();
    QTRY_VERIFY(!list());

    finger.tap(combo);
    screen->hide();
    QTRY_VERIFY(!list());
    QCOMPARE(combo->currentIndex(), 17);
}

void UiWidgetsTest::topBarHoldsItsActions() {
    auto* bar = add<TopBar>(0, 0, 480, 72);
    bar->setBackVisible(true);
    bar->setForwardKey(u("Save"));
    bar->setDeleteKey(u("Delete"));
    bar->setHomeVisible(false);
    bar->applyScripts(sameText);
    show();
    QVERIFY(!bar->button(TopBar::Home));
    QCOMPARE(bar->button(TopBar::Forward)->geometry().right() + 1, 468);
    QCOMPARE(bar->button(TopBar::Delete)->geometry().right() + 9,
             bar->button(TopBar::Forward)->x());
    const int shortX = bar->button(TopBar::Forward)->x();
    bar->button(TopBar::Forward)->setText(u("Save everything"));
    QTRY_VERIFY(bar->button(TopBar::Forward)->x() < shortX);

    QSignalSpy saved(bar, &TopBar::forwardTouched);
    Finger finger(window_.get());
    finger.down(QPoint(460, 2));  // above what is drawn
    finger.up();
    QCOMPARE(saved.count(), 1);
    bar->setForwardKey(QString());
    QCOMPARE(bar->button(TopBar::Delete)->geometry().right() + 1, 468);
}

void UiWidgetsTest::listTellsTapFromScroll() {
    auto* list = add<ScrollList>(0, 0, 480, 400);
    list->setWidgetResizable(true);
    auto* rows = new QWidget;
    auto* layout = new QVBoxLayout(rows);
    int touches = 0;
    ListRow* third = nullptr;
    for (int i = 0; i < 20; ++i) {
        auto* row = new ListRow;
        row->setMark(ListRow::Chevron);
        connect(row, &WidgetButton::touched, this, [&touches] { ++touches; });
        layout->addWidget(row);
        if (i == 2)
            third = row;
    }
    list->setWidget(rows);
    show();
    Finger finger(window_.get());
    const QScrollBar* position = list->verticalScrollBar();

    finger.tap(third);
    QCOMPARE(touches, 1);
    QCOMPARE(clicks_, 1);
    QCOMPARE(position->value(), 0);

    // A quick swipe never reaches the row.
    finger.down(third);
    finger.move(0, -60);
    QCOMPARE(position->value(), 60);
    finger.up();
    QCOMPARE(touches, 1);
    QCOMPARE(clicks_, 1);
    QTRY_VERIFY(position->value() > 60);

    // The touch that stops the running list is not one on a row.
    finger.down(QPoint(200, 200));
    finger.up();
    const int stopped = position->value();
    QCOMPARE(touches, 1);
    QVERIFY(stopped < position->maximum());

    // A finger that rests first has pressed the row; moving on takes the press back.
    auto* below = qobject_cast<WidgetButton*>(window_->childAt(200, 200));
    QVERIFY(below);
    finger.down(QPoint(200, 200));
    QTRY_VERIFY(below->isDown());
    finger.move(0, 40);
    QVERIFY(!below->isDown());
    QCOMPARE(position->value(), stopped - 40);
    finger.up();
    QCOMPARE(touches, 1);

    // Where everything is in view, nothing scrolls and a press shows at once.
    list->resize(480, 4000);
    window_->resize(480, 4000);
    QTRY_COMPARE(position->maximum(), 0);
    finger.down(third);
    QVERIFY(third->isDown());
    finger.up();
    QCOMPARE(touches, 2);
}

void UiWidgetsTest::listShowsFieldAboveKeypad() {
    auto* list = add<ScrollList>(0, 72, 480, 728);
    auto* content = new QWidget;
    content->resize(480, 700);
    auto* field = new InputField(content);
    field->setGeometry(100, 640, 172, 56);
    list->setWidget(content);
    show();
    QCOMPARE(list->verticalScrollBar()->maximum(), 0);
    list->setCoveredHeight(322);
    list->reveal(field);
    QVERIFY(field->mapTo(window_.get(), QPoint(0, field->height())).y() <= 478);
    list->setCoveredHeight(0);
    QCOMPARE(list->verticalScrollBar()->maximum(), 0);
}

void UiWidgetsTest::rowMakesRoomForItsControl() {
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setAlignment(Qt::AlignTop);
    auto* row = new ListRow;
    layout->addWidget(row);
    auto* toggle = new Toggle(row);
    toggle->setLeftKey(u("On"));
    toggle->setRightKey(u("Off"));
    Scripted::applyBelow(window_.get(), sameText);
    show();
    QCOMPARE(row->height(), 76);
    QCOMPARE(toggle->geometry(), QRect(212, 10, 226, 56));

    // Screens get the texts of a new language while they are hidden.
    window_->hide();
    toggle->setRightKey(u("Only while somebody is there"));
    Scripted::applyBelow(window_.get(), sameText);
    show();
    QTRY_COMPARE(row->height(), 128);
    QCOMPARE(toggle->geometry(), QRect(10, 62, 428, 56));
}

void UiWidgetsTest::timeRangeIsFormatted() {
    InputField field;
    field.setAllowedCharacters(InputField::TimeRange);
    QStringList shown;
    connect(&field, &InputField::textChanged, this,
            [&shown](const QString& text) { shown.append(text); });
    for (const QChar digit : u("09001"))
        field.insert(digit);
    QCOMPARE(shown, QStringList({u("0"), u("09"), u("09:0"), u("09:00"), u("09:00~1")}));
    field.backspace();
    QCOMPARE(field.text(), u("09:00"));
    field.backspace();
    QCOMPARE(field.text(), u("09:0"));
    field.setText(u("08:30~17:459"));
    QCOMPARE(field.text(), u("08:30~17:45"));
    field.insert(u("1"));
    QCOMPARE(field.text(), u("08:30~17:45"));
    field.clear();
    field.backspace();
    QCOMPARE(field.text(), QString());
}

void UiWidgetsTest::fieldRefusesWhatIsNotAllowed_data() {
    QTest::addColumn<InputField::Characters>("allowed");
    QTest::addColumn<int>("maxLength");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    // Full-width and Arabic digits are digits to Unicode, not to the device.
    QTest::newRow("digits") << InputField::Digits << 11 << u("01１٢0a-") << u("010");
    QTest::newRow("address") << InputField::Address << 15 << u("192.168,0。1") << u("192.16801");
    QTest::newRow("latin") << InputField::Latin << 8 << u("aB3 ~é가\n") << u("aB3 ~");
    QTest::newRow("any") << InputField::Any << 8 << u("가é\t\n나") << u("가é나");
    QTest::newRow("full") << InputField::Any << 3 << u("가나다라") << u("가나다");
    QTest::newRow("pair kept whole") << InputField::Any << 4 << u("가나다😀") << u("가나다");
}

void UiWidgetsTest::fieldRefusesWhatIsNotAllowed() {
    QFETCH(const InputField::Characters, allowed);
    QFETCH(const int, maxLength);
    QFETCH(const QString, typed);
    QFETCH(const QString, kept);
    InputField field;
    field.setMaxLength(maxLength);
    field.setAllowedCharacters(allowed);
    field.setText(typed);
    QCOMPARE(field.text(), kept);
    field.clear();
    for (const uint character : typed.toUcs4())
        field.insert(QString::fromUcs4(&character, 1));
    QCOMPARE(field.text(), kept);
}

void UiWidgetsTest::fieldComposes() {
    auto* field = add<InputField>(0, 0, 232, 56);
    show();
    QSignalSpy requested(field, &InputField::editRequested);
    QSignalSpy finished(field, &InputField::editingFinished);
    Finger(window_.get()).tap(field);
    QCOMPARE(requested.count(), 1);
    field->setEditing(true);

    field->setMaxLength(2);
    field->insert(u("가"));
    QVERIFY(field->setPreedit(u("나")));
    QCOMPARE(field->text(), u("가"));
    field->backspace();
    QCOMPARE(field->text(), u("가"));
    QVERIFY(field->setPreedit(u("다")));
    field->setEditing(false);
    QCOMPARE(field->text(), u("가다"));
    QCOMPARE(finished.count(), 1);
    QVERIFY2(!field->setPreedit(u("라")), "there is no room");

    CodeEntry code;
    code.insert(u("010234567890"));
    QCOMPARE(code.text(), u("01023456789"));
    QVERIFY(code.isComplete());
}

void UiWidgetsTest::textsGiveWay() {
    struct Written {
        int size;
        bool cut;
    };
    const auto write = [](const ScriptHandler::Script& text, int width) {
        TextRecorder recorder(QSize(480, 72));
        QPainter painter(&recorder);
        TextFit::draw(&painter, {0, 0, width, 72}, Qt::AlignLeft, text, TextFit::kTitle,
                      QFont::Medium, qRgb(255, 255, 255));
        const TextRecorder::Text last = recorder.texts().last();
        return Written{last.size, last.text.endsWith(QChar(0x2026))};
    };
    const auto title = [&](const char* text, int width) { return write(sameText(u(text)), width); };
    QCOMPARE(title("Settings", 300).size, 26);
    QCOMPARE(title("Attendance and canteen settings", 200).size, 22);
    QVERIFY(!title("Attendance and canteen settings", 200).cut);
    QCOMPARE(title("First line<br>second line", 300).size, 22);
    // Without spaces a text may break anywhere rather than be cut.
    QCOMPARE(title("勤怠モード設定と食堂設定の管理", 200).size, 22);
    QVERIFY(!title("勤怠モード設定と食堂設定の管理", 200).cut);
    QVERIFY(!title("사용자등급선택및출입구역설정", 200).cut);
    QVERIFY(title("Attendance and canteen settings of every single terminal", 200).cut);

    ScriptHandler::Script small = sameText(u("Settings"));
    small.size = 18;
    QCOMPARE(write(small, 300).size, 18);
    QCOMPARE(write(TextFit::roleSized(small), 300).size, 26);
}

QTEST_MAIN(UiWidgetsTest)
#include "ui_widgets_test.moc"
