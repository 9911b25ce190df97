#include <QBuffer>
#include <QImageWriter>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QStringListModel>
#include <QVBoxLayout>
#include <QtTest>
#include <functional>
#include <map>

#include "sim/device_root.h"
#include "tests/support/finger.h"
#include "tools/gallery/paint_recorder.h"
#include "ui/code_entry.h"
#include "ui/combo.h"
#include "ui/dialog_form.h"
#include "ui/key_click.h"
#include "ui/label_button.h"
#include "ui/list_row.h"
#include "ui/pick_list.h"
#include "ui/pictures.h"
#include "ui/plus_minus.h"
#include "ui/row_list.h"
#include "ui/scroll_list.h"
#include "ui/text_fit.h"
#include "ui/theme.h"
#include "ui/toggle.h"
#include "ui/top_bar.h"
#include "ui/touch_shield.h"
#include "ui/wait_form.h"

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

}  // namespace

class UiWidgetsTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        window_ = std::make_unique<QWidget>();
        window_->resize(480, 800);
        window_->show();
        QVERIFY(QTest::qWaitForWindowActive(window_.get()));
        finger = Finger(window_.get());
        clicks_ = 0;
        told_.clear();
        KeyClick::setHandler([this] { ++clicks_; });
        TouchShield::setTime(0);
    }

    void cleanup() {
        MessageOverlay::setScripts({});
        KeyClick::setHandler({});
        window_.reset();
    }

    void buttonRunsItsActionOnce() {
        auto* button = add<LabelButton>(100, 100, 144, 72);
        int runs = 0;
        const auto click = [&button] { QTest::mouseClick(button, Qt::LeftButton); };
        connect(button, &WidgetButton::touched, this, [&] {
            ++runs;
            click();
            QCoreApplication::processEvents();
            click();
        });
        finger.down(button);
        QVERIFY(button->isDown());
        finger.move(0, 100);
        QVERIFY(!button->isDown());
        finger.up();
        finger.down(button);
        button->setEnabled(false);
        finger.up();
        finger.tap(button);
        QCOMPARE(QPoint(runs, clicks_), QPoint(0, 2));

        button->setEnabled(true);
        click();
        click();  // still before the event loop runs again
        QCOMPARE(QPoint(runs, clicks_), QPoint(1, 3));
        QCoreApplication::processEvents();
        click();
        QCOMPARE(runs, 2);

        // An action may delete its button.
        button = add<LabelButton>(0, 0, 9, 9);
        connect(button, &WidgetButton::touched, this, [button] { delete button; });
        click();
    }

    void plusMinusRepeats() {
        auto* number = add<PlusMinus>(100, 100, 208, 56);
        number->setMinimum(1);
        number->setMaximum(8);
        const auto* plus = child<LabelButton>(*number, "plusButton");
        const auto* minus = child<LabelButton>(*number, "minusButton");
        QVERIFY(minus->isLimited());
        finger.tap(plus);
        QCOMPARE(number->value(), 2);
        QVERIFY(!minus->isLimited());
        finger.down(plus);
        QTRY_COMPARE(number->value(), 8);
        QVERIFY(plus->isLimited());
        finger.up();
        QSignalSpy changed(number, &PlusMinus::valueChanged);
        finger.tap(plus);
        QCOMPARE(clicks_, 3);
        QCOMPARE(changed.count(), 0);
        number->setMaximum(5);
        QCOMPARE(number->value(), 5);
    }

    void comboPicks() {
        auto* screen = add<QWidget>(0, 0, 480, 800);
        auto* combo = new Combo(screen);
        combo->setGeometry(100, 0, 208, 56);
        combo->show();
        combo->setItemKeys(u("0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19").split(u(" ")));
        combo->applyScripts(sameText);
        MessageOverlay::setScripts(sameText);
        combo->setCurrentIndex(18);
        combo->setCurrentIndex(20);
        QCOMPARE(combo->currentText(), u("18"));
        QSignalSpy changed(combo, &Combo::currentIndexChanged);
        const auto list = [this] { return window_->findChild<PickList*>(); };
        const std::function<void()> ends[] = {
            [&] {
                QVERIFY(!child<>(*list(), "item18")->visibleRegion().isEmpty());
                finger.tap(child<>(*list(), "item17"));
            },
            [this] { finger.tap(QPoint(5, 5)); },
            [this] { MessageOverlay::scriptsChanged(window_.get()); },
            [screen] { screen->hide(); }};
        for (const auto& end : ends) {
            finger.tap(combo);
            QVERIFY(list());
            end();
            QTRY_VERIFY(!list());
            QCOMPARE(combo->currentIndex(), 17);
        }
        QCOMPARE(changed.count(), 1);
    }

    void topBarHoldsItsActions() {
        auto* bar = add<TopBar>(0, 0, 480, 72);
        bar->setForwardKey(u("Save"));
        bar->setDeleteKey(u("Delete"));
        bar->applyScripts(sameText);
        const LabelButton* remove = bar->button(TopBar::Delete);
        LabelButton* forward = bar->button(TopBar::Forward);
        QTRY_VERIFY(remove->x() > 0);
        const int left = remove->x();
        forward->setText(u("Save everything"));
        QTRY_VERIFY(remove->x() < left);
        QVERIFY(!remove->geometry().intersects(forward->geometry()));
        QSignalSpy saved(bar, &TopBar::forwardTouched);
        finger.tap(QPoint(460, 2));  // above what is drawn
        QCOMPARE(saved.count(), 1);
        bar->setForwardKey(QString());
        QCOMPARE(remove->geometry().right() + 1, 468);
    }

    void listTellsTapFromScroll() {
        auto* list = add<ScrollList>(0, 0, 480, 400);
        list->setWidgetResizable(true);
        auto* rows = new QWidget;
        auto* layout = new QVBoxLayout(rows);
        int touches = 0;
        for (int i = 0; i < 20; ++i) {
            auto* row = new ListRow;
            row->setMark(ListRow::Chevron);
            connect(row, &WidgetButton::touched, this, [&touches] { ++touches; });
            layout->addWidget(row);
        }
        list->setWidget(rows);
        QCoreApplication::processEvents();
        QScrollBar* position = list->verticalScrollBar();
        auto* third = qobject_cast<WidgetButton*>(layout->itemAt(2)->widget());
        const auto seen = [&] { return QPoint(touches, position->value()); };
        const auto swipe = [&](int rest) {
            finger.down(third);
            finger.move(0, -60);
            finger.up(rest);
            QCoreApplication::processEvents();
        };
        finger.tap(third);
        QCOMPARE(seen(), QPoint(1, 0));

        // A swipe never reaches the row, and ends where a finger leaves that has come to rest.
        swipe(150);
        QCOMPARE(seen(), QPoint(1, 60));
        QCOMPARE(clicks_, 1);

        // Thrown, it goes on until it is touched, which does nothing else.
        swipe(-1);
        QTRY_VERIFY(position->value() > 200);
        list->rewind();
        swipe(-1);
        finger.down(QPoint(200, 200));
        const int caught = position->value();
        finger.up();
        QCOMPARE(seen(), QPoint(1, caught));
        finger.tap(QPoint(200, 200));
        QCOMPARE(seen(), QPoint(2, caught));
        position->setValue(60);

        // A finger that rests first has pressed the row; moving on takes the press back.
        finger.down(third);
        QTRY_VERIFY(third->isDown());
        finger.move(0, 40);
        QVERIFY(!third->isDown());
        finger.up(150);
        QCOMPARE(seen(), QPoint(2, 20));

        // Where everything is in view, nothing scrolls and a press shows at once.
        list->resize(480, 4000);
        window_->resize(480, 4000);
        QTRY_COMPARE(position->maximum(), 0);
        finger.down(third);
        QVERIFY(third->isDown());
        finger.up();
        QCOMPARE(touches, 3);
    }

    void rowsCostWhatIsSeen() {
        struct Pages : QStringListModel {
            bool canFetchMore(const QModelIndex&) const override { return rowCount() < all; }
            void fetchMore(const QModelIndex&) override { insertRows(rowCount(), 1000); }
            Qt::ItemFlags flags(const QModelIndex& index) const override {
                return index.row() == 1 ? Qt::NoItemFlags : Qt::ItemIsEnabled;
            }
            int all = 0;
        } model;
        struct Painter : RowPainter {
            using RowPainter::RowPainter;
            void paintRow(QPainter*, const QRect&, const QModelIndex& index,
                          const RowState& state) const override {
                if (painted.last() != index.row())
                    painted.append(index.row());
                pressed = state.pressed ? index.row() : pressed;
            }
            mutable QVector<int> painted{-1};
            mutable int pressed = -1;
        };
        auto* list = add<RowList>(0, 0, 480, 400);
        auto* painter = new Painter(list);
        list->setRowPainter(painter);
        list->setModel(&model);
        list->setEmptyKey(u("nothing"));
        Scripted::applyBelow(window_.get(), sameText);
        QVector<int> touched;
        connect(list, &RowList::rowTouched, this, [&](const QModelIndex& index) {
            touched.append(index.row());
            list->select(index);
        });
        PaintRecorder recorder(window_->size());
        window_->render(&recorder);
        QVERIFY(recorder.has(u("nothing")));

        // The next page comes before the end of the one before is seen.
        model.all = 10000;
        model.fetchMore({});
        finger.tap(QPoint(200, 84 + 40));      // cannot be touched
        finger.tap(QPoint(200, 2 * 84 + 80));  // between two rows
        QCOMPARE(touched.size() + clicks_, 0);
        finger.tap(QPoint(200, 2 * 84 + 40));
        QCOMPARE(touched, QVector<int>{2});
        QCOMPARE(list->selected().row(), 2);
        QCOMPARE(clicks_, 1);
        // A finger that slips off its row touches nothing.
        finger.down(QPoint(200, 2 * 84 + 72));
        QTRY_COMPARE(painter->pressed, 2);
        finger.move(0, 8);
        painter->pressed = -1;
        list->grab();
        QCOMPARE(painter->pressed, -1);
        finger.up();
        // Nor does one that a dialog has come up in front of.
        finger.down(QPoint(200, 2 * 84 + 40));
        DialogForm dialog(window_.get());
        dialog.show();
        finger.up();
        dialog.hide();
        QCOMPARE(touched.size(), 1);
        QScrollBar* bar = list->verticalScrollBar();
        while (model.rowCount() < model.all) {
            const int before = model.rowCount();
            list->doItemsLayout();
            bar->setValue(bar->maximum() - 300);
            QCOMPARE(model.rowCount(), before + 1000);
        }
        painter->painted = {-1};
        list->reveal(model.index(5000, 0));
        list->grab();
        QVERIFY2(painter->painted.size() <= 8, "rows are painted that are not seen");

        // What becomes a scroll is no touch, and the row looks so again.
        painter->pressed = -1;
        finger.down(QPoint(200, 200));
        QTRY_VERIFY(painter->pressed >= 0);
        finger.move(0, -60);
        finger.up(150);
        painter->pressed = -1;
        list->grab();
        QCOMPARE(painter->pressed, -1);
        QCOMPARE(touched.size(), 1);
        model.setStringList({});
        QVERIFY(!list->selected().isValid());
    }

    void rowMakesRoomForItsControl() {
        auto* layout = new QVBoxLayout(window_.get());
        layout->setAlignment(Qt::AlignTop);
        auto* row = new ListRow;
        layout->addWidget(row);
        auto* toggle = new Toggle(row);
        toggle->setLeftKey(u("On"));
        // Screens get the texts of a new language while they are hidden.
        for (const auto& [text, height] :
             {std::pair("Off", 76), {"Only while somebody is there", 128}}) {
            window_->hide();
            toggle->setRightKey(u(text));
            Scripted::applyBelow(window_.get(), sameText);
            window_->show();
            QTRY_COMPARE(row->height(), height);
        }
        QCOMPARE(toggle->geometry(), QRect(10, 62, row->width() - 20, 56));
    }

    void dialogTellsTheAnswer() {
        DialogForm dialog(window_.get());
        watch(dialog);
        const auto* ok = child<>(dialog, "dialogOkButton");
        const auto* cancel = child<>(dialog, "dialogCancelButton");
        // A handler may ask the next question with the same dialog.
        connect(&dialog, &DialogForm::touchOk, &dialog, &QWidget::show);
        dialog.show();
        for (const int type : {0, 16, 272}) {
            dialog.setButtonType(type);
            QCOMPARE(ok->isVisible(), type != 0);
            QCOMPARE(cancel->isVisible(), type == 272);
        }
        QVERIFY(cancel->y() == ok->y() && cancel->geometry().right() < ok->x());
        finger.tap(ok);
        QVERIFY(dialog.isVisible());
        QCOMPARE(told_, u("ok "));
        finger.tap(cancel);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(told_, u("ok cancel closed "));
    }

    void dialogClosesByItself() {
        DialogForm dialog(window_.get(), 1);
        watch(dialog);
        for (const char* told : {"closed ", "closed closed "}) {
            dialog.show();
            QTRY_VERIFY(!dialog.isVisible());
            QCOMPARE(told_, u(told));
        }
        dialog.setAutoClose(0);
        dialog.show();
        dialog.hide();
        for (const bool closes : {false, true}) {
            dialog.show();
            dialog.checkWindowChange(closes);
            dialog.windowChanged();
            QCOMPARE(dialog.isVisible(), !closes);
        }
        QCOMPARE(told_, u("closed closed "));

        QPointer<DialogForm> once = new DialogForm(window_.get());
        once->setDeleteOnClose(true);
        once->show();
        once->hide();
        QTRY_VERIFY(!once);
    }

    void dialogBlocksWhatIsBehind() {
        auto* behind = add<WidgetButton>(0, 0, 100, 100);
        auto* entry = add<QLineEdit>(0, 700, 100, 50);
        entry->setFocus();
        QSignalSpy touched(behind, &WidgetButton::touched);
        DialogForm dialog(window_.get());
        // A finger that lies on the button already does not set it off either.
        finger.down(behind);
        dialog.show();
        finger.up();
        finger.tap(behind);
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Tab, Qt::Key_A})
            QTest::keyClick(window_->windowHandle(), key);
        QCOMPARE(touched.count() + entry->text().size(), 0);
        QVERIFY(dialog.isVisible());
        dialog.setBackgroundDisabled(false);
        finger.tap(behind);
        QCOMPARE(touched.count(), 1);
        dialog.hide();
        QTest::keyClick(window_->windowHandle(), 'a');
        QCOMPARE(entry->text(), u("a"));
        finger.tap(behind);
        QCOMPARE(touched.count(), 2);
    }

    void oneDialogIsSeenAtATime() {
        auto* screen = add<QWidget>(0, 0, 480, 800);
        WaitForm wait(screen);
        DialogForm message(window_.get());
        DialogForm later(screen);
        DialogForm fault(window_.get(), 0, DialogRank::Fault);
        watch(message);
        const std::map<int, QWidget*> all{
            {'w', &wait}, {'m', &message}, {'l', &later}, {'f', &fault}, {'s', screen}};
        // A capital shows one of them, or has the screen cover them, a small letter takes that
        // back. What is seen then stands behind it.
        const auto play = [&](const char* steps) {
            for (const QByteArray& step : QByteArray(steps).split(' ')) {
                if (step[0] == 'C' || step[0] == 'c')
                    DialogOverlay::coverWith(window_.get(), step[0] == 'C' ? screen : nullptr);
                else
                    all.at(tolower(step[0]))->setVisible(isupper(step[0]) != 0);
                QByteArray seen;
                for (const auto& [letter, dialog] : all) {
                    if (letter != 's' && dialog->isVisible())
                        seen += char(letter);
                }
                QVERIFY2(seen == step.mid(1), (step + ": " + seen).constData());
                QVERIFY(seen.isEmpty() || DialogOverlay::current(window_.get()) == all.at(seen[0]));
            }
        };
        // Whatever is opened below waits, and comes back with the latest first.
        play("Mm Wm Ff Lf Wf fl lm mw");
        // What has ended meanwhile does not come back, nor does what goes with its screen.
        play("Ff wf Lf sf Sf f");
        QVERIFY(!DialogOverlay::current(window_.get()));
        // Opened while its screen is away, it comes up with that.
        play("s L Mm m Sl l");
        // A screen may lie above them all, but for its own.
        play("Mm C Ll l cm");
        QCOMPARE(told_, QString());
        {
            DialogForm gone(window_.get());
            gone.show();
        }
        QTRY_VERIFY(message.isVisible());
    }

    void timeOfACoveredDialog() {
        DialogForm question(window_.get(), 1);
        DialogForm notice(window_.get(), 1);
        DialogForm fault(window_.get(), 0, DialogRank::Fault);
        notice.setPassing(true);
        watch(question);
        for (DialogForm* dialog : {&fault, &question, &notice})
            dialog->show();
        QTRY_VERIFY(!notice.isOpen());
        QVERIFY(question.isOpen());
        fault.hide();
        QVERIFY(question.isVisible());
        QTRY_COMPARE(told_, u("closed "));
    }

    void openDialogTakesANewLanguage() {
        QString language = u("K ");
        MessageOverlay::setScripts(
            [&language](const QString& key) { return sameText(language + key + u(" %1")); });
        DialogForm popup(window_.get());
        WaitForm wait(window_.get());
        popup.setTextKeys({u("One"), u("Two")});
        popup.setSecondTextKey(u("Three"));
        wait.setTextKey(u("Four"), u("12"));
        wait.show();
        popup.show();
        language = u("J ");
        MessageOverlay::scriptsChanged(window_.get());
        const auto says = [](const QWidget& dialog, const char* label, const char* text) {
            return child<QLabel>(dialog, label)->text().contains(u(text));
        };
        const auto* ok = child<LabelButton>(popup, "dialogOkButton");
        QVERIFY(says(popup, "dialogText", "J One %1<br>J Two %1"));
        QVERIFY(says(popup, "dialogSecondText", "J Three %1"));
        QCOMPARE(ok->text(), u("J TopMenu_OK %1"));
        QVERIFY(says(wait, "dialogText", "J Four 12"));
        // Words of its own are no key's.
        popup.setText(sameText(u("Own")));
        MessageOverlay::scriptsChanged(window_.get());
        QVERIFY(says(popup, "dialogText", "Own"));
    }

    void whatComesUpTakesNoTouchAtFirst() {
        DialogForm dialog(window_.get());
        DialogForm above(window_.get());
        const auto* shield = dialog.findChild<TouchShield*>();
        // Also when it comes back from below another one.
        for (const bool comesBack : {true, false}) {
            TouchShield::setTime(1);
            dialog.show();
            QTRY_VERIFY(!shield->isVisible());
            TouchShield::setTime(3600 * 1000);
            if (comesBack) {
                above.show();
                above.hide();
            }
            finger.tap(child<>(dialog, "dialogOkButton"));
            QCOMPARE(dialog.isVisible(), comesBack);
            QCOMPARE(clicks_, comesBack ? 0 : 1);
            dialog.hide();
        }
    }

    void timeRangeIsFormatted() {
        InputField field;
        field.setAllowedCharacters(InputField::TimeRange);
        connect(&field, &InputField::textChanged, this,
                [this](const QString& text) { told_ += text + u(" "); });
        for (const QChar digit : u("09001"))
            field.insert(digit);
        field.backspace();
        field.backspace();
        QCOMPARE(told_, u("0 09 09:0 09:00 09:00~1 09:00 09:0 "));
        field.setText(u("08:30~17:459"));
        field.insert(u("1"));
        QCOMPARE(field.text(), u("08:30~17:45"));
        field.clear();
        field.backspace();
        QCOMPARE(field.text(), QString());

        // As long as something is missing a caret says where it comes.
        field.resize(172, 56);
        field.setEditing(true);
        int last = 0;
        for (const char* typed : {"", "09:0", "09:00~17:4", "09:00~17:45"}) {
            field.setText(u(typed));
            const QImage seen = field.grab({8, 8, 156, 40}).toImage();
            int caret = 0;
            for (int x = 0; x < seen.width(); ++x)
                if (seen.pixel(x, 20) == Theme::kAccent)
                    caret = x;
            QVERIFY2(field.text().size() == 11 ? caret == 0 : caret > last, typed);
            last = caret;
        }
    }

    void fieldRefusesWhatIsNotAllowed() {
        const std::tuple<InputField::Characters, int, const char*, const char*> rows[] = {
            // Full-width and Arabic digits are digits to Unicode, not to the device.
            {InputField::Digits, 11, "01１٢0a-", "010"},
            {InputField::Address, 15, "192.168,0。1", "192.16801"},
            {InputField::Latin, 8, "aB3 ~é가\n", "aB3 ~"},
            {InputField::Any, 8, "가é\t\n나", "가é나"},
            {InputField::Any, 3, "가나다라", "가나다"},
            {InputField::Any, 4, "가나다😀", "가나다"},  // a pair is kept whole
        };
        for (const auto& [allowed, maxLength, typed, kept] : rows) {
            InputField field;
            field.setMaxLength(maxLength);
            field.setAllowedCharacters(allowed);
            field.setText(u(typed));
            QCOMPARE(field.text(), u(kept));
            field.clear();
            for (const uint character : u(typed).toUcs4())
                field.insert(QString::fromUcs4(&character, 1));
            QCOMPARE(field.text(), u(kept));
        }
        CodeEntry code;
        code.insert(u("010234567890"));
        QVERIFY(code.text() == u("01023456789") && code.isComplete());
    }

    void textsGiveWay() {
        const auto write = [](const ScriptHandler::Script& text, int width) {
            PaintRecorder recorder(QSize(480, 72));
            QPainter painter(&recorder);
            TextFit::draw(&painter, {0, 0, width, 72}, Qt::AlignLeft, text, TextFit::kTitle,
                          QFont::Medium, qRgb(255, 255, 255));
            const PaintRecorder::Text last = recorder.texts().last();
            return last.text.endsWith(QChar(0x2026)) ? 0 : last.size;  // 0 for cut
        };
        const std::tuple<const char*, int, int> rows[] = {
            {"Settings", 300, 26},
            {"Attendance and canteen settings", 200, 22},
            {"First line<br>second line", 300, 22},
            // Without spaces a text may break anywhere rather than be cut.
            {"勤怠モード設定と食堂設定の管理", 200, 22},
            {"사용자등급선택및출입구역설정", 200, 22},
            {"Attendance and canteen settings of every single terminal", 200, 0},
        };
        for (const auto& [text, width, size] : rows)
            QCOMPARE(write(sameText(u(text)), width), size);
        ScriptHandler::Script small = sameText(u("Settings"));
        small.size = 18;
        QCOMPARE(write(small, 300), 18);
        QCOMPARE(write(TextFit::roleSized(small), 300), 26);
    }

    void namesKeepTheirGlyphs() {
        const auto drawn = [](const QString& text, const char* language, TextFit::Rule rule) {
            rule.steps[0].size = 40;
            ScriptHandler::Script script = sameText(text);
            script.fontFamily = u("Noto Sans CJK ") + u(language);
            QImage image(480, 72, QImage::Format_Grayscale8);
            image.fill(Qt::black);
            QPainter painter(&image);
            TextFit::draw(&painter, image.rect(), Qt::AlignLeft, script, rule, QFont::Bold,
                          qRgb(255, 255, 255));
            return image;
        };
        const auto alike = [&drawn](const QString& name, const QString& other) {
            return drawn(name, "KR", TextFit::kName) == drawn(other, "JP", TextFit::kName);
        };
        for (const char* name : {"美咲", "咲かおる", "𠮷咲", "김咲"})
            QVERIFY2(alike(u(name), u(name)), name);
        // One character in parts, as other systems write names, is drawn as one.
        const QString whole = u("김가 é が");
        QVERIFY(alike(whole.normalized(QString::NormalizationForm_D), whole));
        for (const auto& [name, language] : {std::pair("咲", "KR"), {"김咲", "JP"}})
            QVERIFY2(drawn(u(name), language, TextFit::kTitle) !=
                         drawn(u(name), language, TextFit::kName),
                     name);

        auto* field = add<InputField>(0, 0, 480, 56);
        field->setAllowedCharacters(InputField::Any);
        field->setText(u("<i>x</i>"));
        PaintRecorder recorder(field->size());
        field->render(&recorder);
        QVERIFY(recorder.has(u("<i>x</i>")));
    }

    void picturesThatCostTooMuchAreNone() {
        const auto shows = [this](const QByteArray& content) {
            root_.write("/mnt/data/Images/one", content);
            const QImage picture = Pictures::foreignImage(u("/mnt/data/Images"), u("one"), {8, 8});
            return !picture.isNull() && qRed(picture.pixel(4, 4)) > 250;
        };
        const auto encoded = [](const char* format) {
            QImage picture(8, 8, QImage::Format_RGB32);
            picture.fill(Qt::red);
            QBuffer buffer;
            QImageWriter writer(&buffer, format);
            writer.setProgressiveScanWrite(true);
            writer.write(picture);
            return buffer.data();
        };
        constexpr int kLongest = 8 * 1024 * 1024;
        QVERIFY(shows(encoded("bmp").leftJustified(kLongest, '\0')));
        QVERIFY(!shows(encoded("bmp").leftJustified(kLongest + 1, '\0')));
        const QByteArray png = encoded("png");
        QVERIFY(shows(png + QByteArray(20, 'x')));
        constexpr int kEndChunk = 12;
        for (const auto& [length, good] : {std::pair(4, true), {20, false}, {0x60, false}})
            QCOMPARE(shows(QByteArray(png).insert(
                         png.size() - kEndChunk,
                         QByteArray(3, '\0') + char(length) + "tEXta" + QByteArray(7, '\0'))),
                     good);
        const QByteArray jpeg = encoded("jpeg");
        const QByteArray scan = jpeg.mid(jpeg.lastIndexOf("\xFF\xDA")).chopped(2);
        for (const auto& [scans, good] : {std::pair(0, true), {40, true}, {64, false}})
            QCOMPARE(shows(QByteArray(jpeg).insert(jpeg.size() - 2, scan.repeated(scans))), good);
    }

 private:
    template <class Widget>
    Widget* add(int x, int y, int width, int height) {
        auto* widget = new Widget(window_.get());
        widget->setGeometry(x, y, width, height);
        widget->show();
        return widget;
    }
    template <class Widget = QWidget>
    static Widget* child(const QWidget& of, const char* name) {
        return of.findChild<Widget*>(QLatin1String(name));
    }
    /// Notes in told_ what @p dialog says.
    void watch(const DialogForm& dialog) {
        connect(&dialog, &DialogForm::touchOk, this, [this] { told_ += u("ok "); });
        connect(&dialog, &DialogForm::touchCancel, this, [this] { told_ += u("cancel "); });
        connect(&dialog, &DialogForm::closePopup, this, [this] { told_ += u("closed "); });
    }

    DeviceRoot root_;
    std::unique_ptr<QWidget> window_;
    Finger finger{nullptr};
    int clicks_ = 0;
    QString told_;
};

QTEST_MAIN(UiWidgetsTest)
#include "ui_widgets_test.moc"
