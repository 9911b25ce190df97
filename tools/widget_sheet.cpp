// Renders sheets that show the shared widgets side by side in all their states, in each language,
// to PNG files, to be compared by eye: zel-widget-sheet DIR.

#include <QApplication>
#include <QDir>
#include <QHash>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include "ui/check_box.h"
#include "ui/chip.h"
#include "ui/code_entry.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/label_button.h"
#include "ui/list_row.h"
#include "ui/pick_list.h"
#include "ui/plus_minus.h"
#include "ui/progress_bar.h"
#include "ui/scroll_list.h"
#include "ui/spinner.h"
#include "ui/step_bar.h"
#include "ui/theme.h"
#include "ui/thumbnail_view.h"
#include "ui/tile.h"
#include "ui/toggle.h"
#include "ui/top_bar.h"

namespace {

enum Language { Korean, English, Japanese };

/// A text is its own key: "korean|english|japanese", or one text for all.
Scripted::Lookup lookupOf(Language language) {
    return [language](const QString& key) {
        const QStringList texts = key.split(QLatin1Char('|'));
        ScriptHandler::Script script;
        script.script = texts.value(texts.size() == 3 ? language : 0);
        script.fontFamily = QStringLiteral("Noto Sans CJK KR");
        return script;
    };
}

QString u(const char* text) {
    return QString::fromUtf8(text);
}

class Page : public QWidget {
 public:
    Page() {
        setFixedSize(Theme::kScreenWidth, Theme::kScreenHeight);
        QPalette ground;
        ground.setColor(QPalette::Window, Theme::color(Theme::kBackground));
        setPalette(ground);
    }

    template <class Widget>
    Widget* add(int x, int y, int width, int height) {
        auto* widget = new Widget(this);
        widget->setGeometry(x, y, width, height);
        return widget;
    }

    void save(const QDir& folder, const QString& name, Language language) {
        static const char* const suffixes[] = {"ko", "en", "ja"};
        Scripted::applyBelow(this, lookupOf(language));
        show();
        QCoreApplication::processEvents();
        grab().save(folder.filePath(
            QStringLiteral("%1-%2.png").arg(name, QLatin1String(suffixes[language]))));
    }
};

void press(QWidget* widget) {
    const QPointF point = widget->rect().center();
    QMouseEvent event(QEvent::MouseButtonPress, point, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void controls(const QDir& folder, Language language) {
    Page page;
    QVector<QWidget*> pressed;
    const struct {
        const char* text;
        LabelButton::Role role;
    } buttons[] = {{"취소|Cancel|キャンセル", LabelButton::Neutral},
                   {"저장|Save|保存", LabelButton::Primary},
                   {"삭제|Delete|削除", LabelButton::Danger}};
    for (int column = 0; column < 3; ++column) {
        const int x = 16 + 152 * column;
        int y = 36;
        for (const auto& one : buttons) {
            auto* button = page.add<LabelButton>(x, y, 144, 72);
            button->setTextKey(u(one.text));
            button->setRole(one.role);
            button->setEnabled(column != 2);
            if (column == 1)
                pressed.append(button);
            y += 80;
        }
        auto* combo = page.add<Combo>(x, 304, 144, 56);
        combo->setItemKeys({u("자동|Auto|自動")});
        combo->setEnabled(column != 2);
        if (column == 1)
            pressed.append(combo);
        auto* field = page.add<InputField>(x, 396, 144, 56);
        field->setAllowedCharacters(InputField::TimeRange);
        field->setText(u("09:00~18:00"));
        field->setEditing(column == 1);
        field->setEnabled(column != 2);
        auto* toggle = page.add<Toggle>(x, 488, 144, 56);
        toggle->setLeftKey(u("켬|On|入"));
        toggle->setRightKey(u("끔|Off|切"));
        toggle->setCurrentIndex(column == 1);
        toggle->setEnabled(column != 2);
    }
    for (int i = 0; i < 4; ++i) {
        auto* number = page.add<PlusMinus>(i % 2 ? 256 : 16, i < 2 ? 580 : 644, 208, 56);
        number->setMinimum(1);
        number->setValue(i == 2 ? 1 : 5 + (i == 1));
        number->setEnabled(i != 3);
        if (i == 1)
            pressed.append(number->findChild<LabelButton*>(QStringLiteral("plusButton")));
    }
    for (int i = 0; i < 4; ++i) {
        auto* box = page.add<CheckBox>(6 + 66 * i, 728, 56, 56);
        box->setChecked(i % 2);
        box->setEnabled(i < 2);
    }
    for (QWidget* widget : pressed)
        press(widget);
    page.save(folder, QStringLiteral("controls"), language);
}

void states(const QDir& folder, Language language) {
    Page page;
    for (int i = 0; i < 4; ++i) {
        auto* row = page.add<ListRow>(16, 36 + 62 * i, 448, 56);
        row->setTextKey(u("줄|Row|行"));
        row->setMark(i == 2 ? ListRow::Radio : ListRow::Chevron);
        row->setSelected(i == 2);
        row->setEnabled(i != 3);
        if (i == 1)
            press(row);
    }
    auto* steps = page.add<StepBar>(0, 594, 480, 72);
    steps->setCurrentStep(3);
    auto* progress = page.add<ProgressBar>(16, 696, 448, 12);
    progress->setValue(64);
    page.add<Spinner>(8, 714, 72, 72);
    auto* chip = page.add<Chip>(92, 730, 380, 40);
    chip->setTextKey(u("출근 모드|Check-in mode|出勤モード"));
    chip->setIconName(QStringLiteral("menu_attendance.png"));
    auto* code = page.add<CodeEntry>(24, 310, 432, 116);
    code->setText(u("0102345"));
    code->setEditing(true);
    code->setCaptionKey(u("고객인증번호 11자리|11-digit customer number|顧客番号11桁"));
    auto* text = page.add<InputField>(24, 450, 200, 56);
    text->setText(u("경비실 2층 로비"));
    text->setEditing(true);
    text->setPreedit(u("한"));
    auto* password = page.add<InputField>(248, 450, 208, 56);
    password->setPasswordMode(true);
    password->setText(u("secret"));
    page.add<InputField>(248, 516, 208, 56)
        ->setPlaceholderKey(u("주소 입력|Enter address|住所入力"));
    page.add<ThumbnailView>(24, 516, 68, 68);
    page.save(folder, QStringLiteral("states"), language);
}

void settings(const QDir& folder, Language language) {
    Page page;
    auto* bar = page.add<TopBar>(0, 0, 480, 72);
    bar->setTitleKey(u("근태모드 설정|Attendance settings|勤怠モード設定"));
    bar->setBackVisible(true);
    bar->setForwardKey(u("저장|Save|保存"));
    auto* list = page.add<ScrollList>(0, 72, 480, 728);
    list->setWidgetResizable(true);
    auto* rows = new QWidget;
    auto* layout = new QVBoxLayout(rows);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(8);
    list->setWidget(rows);
    const auto row = [&](const char* text) {
        auto* made = new ListRow;
        made->setTextKey(u(text));
        layout->addWidget(made);
        return made;
    };
    const auto combo = [&](QWidget* on, const QStringList& items) {
        auto* made = new Combo(on);
        made->setTitleKey(u("근태모드 설정|Attendance mode|勤怠モード設定"));
        made->setItemKeys(items);
        return made;
    };
    const auto range = [&](QWidget* on, const char* text) {
        auto* made = new InputField(on);
        made->setAllowedCharacters(InputField::TimeRange);
        made->setText(u(text));
        return made;
    };
    auto* mode = combo(
        row("근태모드 설정|Attendance mode|勤怠モード設定"),
        {u("자동|Automatic|自動"), u("수동|Manual|手動"), u("출근 용|Check-in|出勤用"),
         u("퇴근 용|Check-out|退勤用"), u("외출 용|Break|外出用"), u("복귀 용|Return|戻り用")});
    auto* toggle = new Toggle(row("단순 출입 정보|Simple access log|単純入退室情報"));
    toggle->setLeftKey(u("저장|Save|保存"));
    toggle->setRightKey(u("저장안함|Discard|保存しない"));
    combo(row("문열림 설정|Door opens|ドア開放設定"),
          {u("항상|On in and return|常時"), u("출근 및 복귀 시|Always|出勤・戻り時")});
    (new PlusMinus(row("문열림 시간(초)|Door open time (s)|ドア開放時間(秒)")))->setValue(5);
    for (const bool on : {true, false}) {
        auto* both = row("");
        auto* box = new CheckBox(both);
        box->setTextKey(on ? u("문 강제 열림|Forced open|強制開放")
                           : u("문 강제 닫힘|Forced close|強制閉鎖"));
        box->setChecked(on);
        range(both, on ? "09:00~12:00" : "00:00~00:00")->setEnabled(on);
    }
    auto* rights = new Toggle(row("출입 권한|Access rights|入退室権限"));
    rights->setLeftKey(u("경비/출입|Alarm and access|警備/入退室"));
    rights->setRightKey(u("출입 전용|Access only|入退室のみ"));
    range(row("평일 출근시간|Weekday check-in|平日出勤時間"), "08:00~09:30");
    range(row("평일 퇴근시간|Weekday check-out|平日退勤時間"), "17:30~22:00");
    auto* face = row("얼굴|Face|顔");
    face->setValueKey(u("등록됨|Registered|登録済み"));
    face->setPositive(true);
    auto* card = row("카드|Card|カード");
    card->setValueKey(u("미등록|Not registered|未登録"));
    card->setMark(ListRow::Chevron);
    auto* choice = row("얼굴 또는 카드|Face or card|顔またはカード");
    choice->setMark(ListRow::Radio);
    choice->setIconName(QStringLiteral("auth_face_or_card.png"));
    choice->setIconColumn(132);
    choice->setMinimumHeight(92);
    choice->setSelected(true);
    page.save(folder, QStringLiteral("settings"), language);
    list->verticalScrollBar()->setValue(10000);
    page.save(folder, QStringLiteral("settings-end"), language);
    list->verticalScrollBar()->setValue(0);
    emit mode->touched();
    page.save(folder, QStringLiteral("pick-list"), language);
}

void menu(const QDir& folder, Language language) {
    Page page;
    auto* bar = page.add<TopBar>(0, 0, 480, 72);
    bar->setTitleKey(u("관리자 메뉴|Administrator menu and tools|管理者メニューと詳細設定"));
    bar->setHomeVisible(true);
    bar->setDeleteKey(u("삭제|Delete|削除"));
    const struct {
        const char* text;
        const char* icon;
    } tiles[] = {{"사용자 관리|User management|ユーザー管理", "menu_user"},
                 {"근태 설정|Attendance settings|勤怠設定", "menu_attendance"},
                 {"식당 설정|Canteen|食堂設定", "menu_meal"},
                 {"네트워크|Network|ネットワーク", "menu_network"}};
    for (int i = 0; i < 4; ++i) {
        auto* tile = page.add<Tile>(i % 2 ? 248 : 24, 96 + 172 * (i / 2), 208, 156);
        tile->setTextKey(u(tiles[i].text));
        tile->setIconName(QLatin1String(tiles[i].icon) + QLatin1String(".png"));
        tile->setSelected(i == 2);
        tile->setEnabled(i != 3);
        if (i == 1)
            press(tile);
    }
    for (int i = 0; i < 2; ++i) {
        auto* tile = page.add<Tile>(i ? 244 : 16, 450, 220, 94);
        tile->setWide(true);
        tile->setTextKey(u("로그 데이터<br>내보내기|Export the access log|ログデータの書き出し"));
        tile->setIconName(QStringLiteral("usb_export.png"));
        tile->setEnabled(i == 0);
    }
    auto* first = page.add<LabelButton>(16, 716, 140, 72);
    first->setTextKey(u("처음|First|最初"));
    first->setIconName(QStringLiteral("jump_first.png"));
    auto* status = page.add<ListRow>(16, 560, 448, 76);
    status->setTextKey(u("USB 메모리가 연결됨|USB memory connected|USBメモリー接続済み"));
    status->setIconName(QStringLiteral("menu_usb_40_accent.png"));
    auto* refresh = new LabelButton(status);
    refresh->setTextKey(u("새로고침|Refresh|更新"));
    refresh->setIconName(QStringLiteral("refresh.png"));
    page.save(folder, QStringLiteral("menu"), language);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir root;
    qputenv("ZEL_ROOT", QFile::encodeName(root.path()));
    QDir(root.path()).mkpath(QStringLiteral("usr"));
    QFile::link(QStringLiteral(ZEL_STAGED_ROOT "/zel1/image/img"),
                root.filePath(QStringLiteral("usr/img")));
    QApplication application(argc, argv);
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1]))) {
        qCritical("usage: zel-widget-sheet DIR");
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    for (const Language language : {Korean, English, Japanese}) {
        controls(folder, language);
        states(folder, language);
        settings(folder, language);
        menu(folder, language);
    }
    return 0;
}
