#include "sim/controller/panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QVBoxLayout>

#include "sim/controller/controller_sim.h"

namespace {

constexpr int kColumns = 4;
/// The panel's clock shows no seconds.
constexpr int kClockInterval = 5000;

/// The users, asked for whenever the list is opened. An item's data is the card number.
class UserBox : public QComboBox {
 public:
    explicit UserBox(ControllerSim& controller) : controller_(controller) { refill(); }

    QString userId() const { return currentText().section(QLatin1Char(' '), 0, 0); }
    QString cardNumber() const { return currentData().toString(); }

    void showPopup() override {
        refill();
        QComboBox::showPopup();
    }

 private:
    void refill() {
        static const QRegularExpression line(QStringLiteral("^(\\d+) card (\\d*) (.*)$"));
        const int chosen = currentIndex();
        clear();
        const QStringList lines =
            controller_.execute(QStringLiteral("users")).split(QLatin1Char('\n'));
        for (const QString& text : lines) {
            const QRegularExpressionMatch match = line.match(text);
            if (match.hasMatch())
                addItem(match.captured(1) + QStringLiteral("  ") + match.captured(3),
                        match.captured(2));
        }
        setCurrentIndex(qBound(0, chosen, count() - 1));
    }

    ControllerSim& controller_;
};

}  // namespace

Panel::Panel(ControllerSim& controller)
    : controller_(controller), columns_(new QHBoxLayout), answers_(new QPlainTextEdit(this)) {
    setWindowTitle(QStringLiteral("Device controller"));
    auto* all = new QVBoxLayout(this);
    all->addLayout(columns_);
    beginColumn();
    addPeople();
    addEnrolment();
    addTime();
    addArrangements();

    beginColumn();
    addShown();
    addFaults();
    QGridLayout* reports = addGroup(QStringLiteral("Reports"));
    addButton(reports, QStringLiteral("Enrolment refused"), QStringLiteral("popup enrolment 1"));
    addButton(reports, QStringLiteral("User deleted"), QStringLiteral("popup delete 0"));
    addButton(reports, QStringLiteral("Logs nearly full"), QStringLiteral("popup logs 1"));
    addButton(reports, QStringLiteral("Visitor"), QStringLiteral("visitor"));
    addButton(reports, QStringLiteral("Darken"), QStringLiteral("sleep"));
    addButton(reports, QStringLiteral("Light up"), QStringLiteral("wake"));
    addButton(reports, QStringLiteral("Live view"), QStringLiteral("live"));
    addButton(reports, QStringLiteral("Events"), QStringLiteral("logs"));

    QGridLayout* usb = addGroup(QStringLiteral("USB stick"));
    addButton(usb, QStringLiteral("In"), QStringLiteral("usb in"));
    addButton(usb, QStringLiteral("Out"), QStringLiteral("usb out"));
    addButton(usb, QStringLiteral("Without folder"), QStringLiteral("usb nofolder"));
    addButton(usb, QStringLiteral("Next import fails"), QStringLiteral("usb import 5"));

    QGridLayout* link = addGroup(QStringLiteral("Link, terminal"));
    addButton(link, QStringLiteral("Drop"), QStringLiteral("drop"));
    addButton(link, QStringLiteral("Noise"), QStringLiteral("noise"));
    addButton(link, QStringLiteral("Byte by byte"), QStringLiteral("split"));
    addButton(link, QStringLiteral("Which screen?"), QStringLiteral("screen"));
    addButton(link, QStringLiteral("Restart it"), QStringLiteral("restart-gui"));
    addButton(link, QStringLiteral("End it"), QStringLiteral("quit-gui"));

    auto* words = new QLineEdit(this);
    words->setPlaceholderText(QStringLiteral("help"));
    connect(words, &QLineEdit::returnPressed, this, [this, words] {
        give(words->text());
        words->clear();
    });
    all->addWidget(words);
    answers_->setReadOnly(true);
    answers_->setMaximumBlockCount(1000);
    all->addWidget(answers_, 1);

    connect(&controller_, &ControllerSim::changed, this, &Panel::follow);
    connect(&clockTimer_, &QTimer::timeout, this, &Panel::follow);
    clockTimer_.start(kClockInterval);
    follow();
}

void Panel::follow() {
    for (const auto& follower : qAsConst(followers_))
        follower();
}

void Panel::give(const QString& line) {
    answers_->appendPlainText(QStringLiteral("> ") + line);
    answers_->appendPlainText(controller_.execute(line));
}

void Panel::beginColumn() {
    if (column_ != nullptr)
        column_->addStretch();
    column_ = new QVBoxLayout;
    columns_->addLayout(column_, 1);
}

QGridLayout* Panel::addGroup(const QString& title) {
    auto* group = new QGroupBox(title, this);
    auto* grid = new QGridLayout(group);
    for (int column = 0; column < kColumns; ++column)
        grid->setColumnStretch(column, 1);
    column_->addWidget(group);
    return grid;
}

QPushButton* Panel::addButton(QGridLayout* group, const QString& text,
                              const std::function<QString()>& line, int place) {
    auto* button = new QPushButton(text);
    connect(button, &QPushButton::clicked, this, [this, line] { give(line()); });
    if (place < 0)
        place = group->count();
    group->addWidget(button, place / kColumns, place % kColumns);
    // All columns are as wide as the longest text of the group needs one to be.
    const int width = qMax(button->sizeHint().width(), group->columnMinimumWidth(0));
    for (int column = 0; column < kColumns; ++column)
        group->setColumnMinimumWidth(column, width);
    return button;
}

void Panel::addButton(QGridLayout* group, const QString& text, const QString& line) {
    addButton(group, text, [line] { return line; });
}

void Panel::addPeople() {
    QGridLayout* group = addGroup(QStringLiteral("At the door"));
    auto* users = new UserBox(controller_);
    group->addWidget(users, 0, 0, 1, kColumns);
    int place = kColumns;
    addButton(
        group, QStringLiteral("Face"),
        [users] { return QStringLiteral("face ") + users->userId(); }, place++);
    addButton(
        group, QStringLiteral("Card"),
        [users] { return QStringLiteral("card ") + users->cardNumber(); }, place++);
    addButton(
        group, QStringLiteral("Not permitted"),
        [users] { return QStringLiteral("face %1 denied").arg(users->userId()); }, place++);
    addButton(
        group, QStringLiteral("Unknown face"), [] { return QStringLiteral("face unknown"); },
        place++);
    auto* moving = new QCheckBox(QStringLiteral("A face moves about"));
    connect(moving, &QCheckBox::toggled, this, [this](bool on) {
        give(on ? QStringLiteral("track on") : QStringLiteral("track off"));
    });
    group->addWidget(moving, 2, 0, 1, kColumns);
}

void Panel::addEnrolment() {
    QGridLayout* group = addGroup(QStringLiteral("Enrolment"));
    const auto waitsFor = [this](const char* what) {
        return controller_.execute(QStringLiteral("enrolment")).endsWith(QLatin1String(what));
    };
    // Cards stand in the first row, faces below.
    int cards = 0;
    int faces = kColumns;
    const auto addFor = [&](const char* what, int& place, const QString& text, auto line) {
        QPushButton* button = addButton(group, text, line, place++);
        followers_.append([button, waitsFor, what] { button->setEnabled(waitsFor(what)); });
    };
    addFor("card", cards, QStringLiteral("New card"), [] {
        return QStringLiteral("card %1").arg(
            QRandomGenerator::global()->bounded(20000000, 99999999));
    });
    addFor("card", cards, QStringLiteral("Card in use"),
           [] { return QStringLiteral("card 10000002"); });
    const struct {
        const char* text;
        const char* line;
    } kinds[] = {{"Face", "good"},        {"Slow face", "slow"},   {"Face stalls", "stall"},
                 {"Face in use", "used"}, {"Several faces", "12"}, {"Face not clear", "14"}};
    for (const auto& one : kinds)
        addFor("face", faces, QLatin1String(one.text), [one]() -> QString {
            return QLatin1String("enrol-face ") + QLatin1String(one.line);
        });
}

void Panel::addTime() {
    QGridLayout* group = addGroup(QStringLiteral("Clock"));
    auto* time = new QDateTimeEdit;
    time->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm"));
    // Not under the hands of somebody who is about to set it.
    followers_.append([this, time] {
        if (!time->hasFocus())
            time->setDateTime(controller_.now());
    });
    group->addWidget(time, 0, 0, 1, 2);
    auto* set = new QPushButton(QStringLiteral("Set"));
    connect(set, &QPushButton::clicked, this, [this, time] {
        give(QStringLiteral("time ") +
             time->dateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    });
    group->addWidget(set, 0, 2);
    auto* now = new QPushButton(QStringLiteral("Now"));
    connect(now, &QPushButton::clicked, this, [this] { give(QStringLiteral("time now")); });
    group->addWidget(now, 0, 3);
}

void Panel::addArrangements() {
    QGridLayout* group = addGroup(QStringLiteral("Arrangements"));
    const auto addChoice = [&](int column, const QStringList& texts, auto chosen, auto line) {
        auto* box = new QComboBox;
        box->addItems(texts);
        followers_.append(
            [this, box, chosen] { box->setCurrentIndex(chosen(controller_.settings().setup)); });
        connect(box, QOverload<int>::of(&QComboBox::activated), this,
                [this, line](int index) { give(line(index)); });
        group->addWidget(box, 0, column);
    };
    addChoice(
        0, {QStringLiteral("Access"), QStringLiteral("Attendance"), QStringLiteral("Meals")},
        [](const SetupBlock& setup) { return setup.operation; },
        [](int index) { return QStringLiteral("settings setup.operation %1").arg(index); });
    addChoice(
        1, {QStringLiteral("Korean"), QStringLiteral("English"), QStringLiteral("Japanese")},
        [](const SetupBlock& setup) { return setup.language; },
        [](int index) { return QStringLiteral("settings setup.language %1").arg(index); });
    addChoice(
        2, {QStringLiteral("No alarm"), QStringLiteral("Arm"), QStringLiteral("Disarm")},
        [](const SetupBlock& setup) { return setup.alarmMode; },
        [](int index) {
            const QStringList words{QStringLiteral("none"), QStringLiteral("arm"),
                                    QStringLiteral("disarm")};
            return QStringLiteral("alarm ") + words[index];
        });
}

void Panel::addShown() {
    QGridLayout* group = addGroup(QStringLiteral("Screen and sound"));
    auto* shown = new QLabel;
    followers_.append([this, shown] {
        shown->setText(controller_.execute(QStringLiteral("shown")).section(QLatin1Char(' '), 1));
    });
    group->addWidget(shown, 0, 0);
}

void Panel::addFaults() {
    QGridLayout* group = addGroup(QStringLiteral("Faults"));
    const QStringList names{QStringLiteral("touch"), QStringLiteral("network"),
                            QStringLiteral("tamper")};
    QVector<QCheckBox*> boxes;
    for (const QString& name : names) {
        boxes.append(new QCheckBox(name));
        group->addWidget(boxes.last(), 0, boxes.size() - 1);
    }
    followers_.append([this, boxes] {
        const QStringList faults =
            controller_.execute(QStringLiteral("fault")).split(QLatin1Char(' '));
        for (QCheckBox* box : boxes)
            box->setChecked(faults.contains(box->text()));
    });
    for (QCheckBox* box : qAsConst(boxes)) {
        connect(box, &QCheckBox::clicked, this, [this, boxes] {
            QString line = QStringLiteral("fault");
            for (const QCheckBox* each : boxes) {
                if (each->isChecked())
                    line += QLatin1Char(' ') + each->text();
            }
            give(line == QLatin1String("fault") ? QStringLiteral("fault none") : line);
        });
    }
}
