#include "screens/settings/ping_test_window.h"

#include <QPainter>
#include <QVector>
#include <algorithm>

#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/ipv4.h"
#include "cloud/network_helper.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPopupSeconds = 3;
/// Older answers have been counted and are no longer shown.
constexpr int kMostLines = 100;
constexpr int kLineHeight = 48;
constexpr int kSide = 20;

/// In the order of the form's captions.
enum Fact { Received, Lost, Times };

enum Popup { kPopupAddress, kPopupFailed };
constexpr ScreenText kTexts[] = {
    {kPopupAddress, "ListItem_CheckInputAddress", ScreenText::Error},
    {kPopupFailed, "ListItem_PingFailed", ScreenText::Error},
};

constexpr TextFit::Rule kLineText{{{20, 1}, {18, 1}}, true};

QString milliseconds(double time) {
    return QString::number(time, 'f', time < 10 ? 2 : 1) + QStringLiteral(" ms");
}

/// The address with which a button fills the field; empty when there is none.
QString hostOrNone(const QString& address) {
    return Ipv4::readMachine(address) ? address : QString();
}

AddressBlock ownSettings() {
    return WindowForm::shell()->menuRecord().network.own;
}

// With DHCP the network has named these two, and the settings keep others.

QString gatewayText() {
    const AddressBlock own = ownSettings();
    return hostOrNone(own.dhcp == 1
                          ? NetworkHelper::getGateway(QLatin1String(NetworkHelper::kInterface))
                          : Ipv4::dotted(own.gateway));
}

QString dnsText() {
    const AddressBlock own = ownSettings();
    return hostOrNone(own.dhcp == 1 ? NetworkHelper::getNameServer() : Ipv4::dotted(own.dns));
}

QString serviceText() {
    return hostOrNone(Ipv4::dotted(ownSettings().managerAddress));
}

}  // namespace

/// The latest answers, the last one first.
class PingModel : public QAbstractListModel {
 public:
    struct Line {
        int number;
        PingRun::Outcome outcome;
        double milliseconds;
    };

    using QAbstractListModel::QAbstractListModel;

    void clear() {
        beginResetModel();
        lines_.clear();
        endResetModel();
    }
    void add(const Line& line) {
        if (lines_.size() == kMostLines) {
            beginRemoveRows({}, kMostLines - 1, kMostLines - 1);
            lines_.removeLast();
            endRemoveRows();
        }
        beginInsertRows({}, 0, 0);
        lines_.prepend(line);
        endInsertRows();
    }
    const Line& line(int row) const { return lines_.at(row); }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : lines_.size();
    }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? QVariant(lines_.at(index.row()).number) : QVariant();
    }
    Qt::ItemFlags flags(const QModelIndex&) const override { return Qt::NoItemFlags; }

 private:
    QVector<Line> lines_;
};

namespace {

class PingLinePainter : public RowPainter {
 public:
    explicit PingLinePainter(QObject* parent) : RowPainter(parent, kLineHeight) {}

 protected:
    void paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                  const RowState& state) const override {
        const auto& line = static_cast<const PingModel*>(index.model())->line(index.row());
        const bool answered = line.outcome == PingRun::Outcome::Answer;
        ScriptHandler::Script text;
        text.fontFamily = state.family;
        text.script = QString::number(line.number);
        const QRect row = box.adjusted(kSide, 0, -kSide, 0);
        TextFit::draw(painter, row, Qt::AlignLeft, text, kLineText, QFont::Normal, Theme::kHint);
        text.script = answered ? milliseconds(line.milliseconds)
                               : WindowForm::shell()
                                     ->getScript(line.outcome == PingRun::Outcome::Lost
                                                     ? QStringLiteral("Info_PingNoAnswer")
                                                     : QStringLiteral("Info_PingNoWay"))
                                     .script;
        TextFit::draw(painter, row, Qt::AlignRight, text, kLineText, QFont::Medium,
                      answered ? Theme::kStrong : Theme::kDanger);
    }
};

}  // namespace

PingTestWindow::PingTestWindow(QWidget* parent, const QString& title)
    : FormScreen(parent, title), lines_(new PingModel(this)), popup_(this, kTexts) {
    connect(&run_, &PingRun::told, this, &PingTestWindow::GetTestResult);
    connect(&run_, &PingRun::failed, this, [this] {
        showState();
        popup_.show(kPopupFailed, kPopupSeconds);
    });
}

void PingTestWindow::built() {
    ui_->list->setRowPainter(new PingLinePainter(this));
    ui_->list->setModel(lines_);
    connect(ui_->startButton, &WidgetButton::touched, this, &PingTestWindow::startButtonTouch);
    connect(ui_->stopButton, &WidgetButton::touched, this, &PingTestWindow::stopButtonTouch);
    const auto fill = [this](LabelButton* button, QString (*address)()) {
        connect(button, &WidgetButton::touched, this,
                [this, address] { ui_->addressField->setText(address()); });
    };
    fill(ui_->gatewayButton, &gatewayText);
    fill(ui_->serviceButton, &serviceText);
    fill(ui_->dnsButton, &dnsText);
}

void PingTestWindow::windowInEvent() {
    FormScreen::windowInEvent();
    lines_->clear();
    ui_->addressField->setText(gatewayText());
    run_.reset();
    showAddresses();
    showState();
}

void PingTestWindow::windowOutEvent() {
    FormScreen::windowOutEvent();
    run_.stop();
}

void PingTestWindow::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    showAddresses();
}

void PingTestWindow::scriptsApplied() {
    FormScreen::scriptsApplied();
    showState();
}

void PingTestWindow::startButtonTouch() {
    shell()->removeTouchKey();
    const QString address = ui_->addressField->text();
    if (!Ipv4::readMachine(address)) {
        popup_.show(kPopupAddress, kPopupSeconds);
        return;
    }
    lines_->clear();
    run_.start(address);
    showState();
}

void PingTestWindow::stopButtonTouch() {
    run_.stop();
    showState();
}

void PingTestWindow::GetTestResult(int number, PingRun::Outcome outcome, double milliseconds) {
    lines_->add({number, outcome, milliseconds});
    showState();
}

void PingTestWindow::showAddresses() {
    ui_->gatewayButton->setEnabled(!gatewayText().isEmpty());
    ui_->serviceButton->setEnabled(!serviceText().isEmpty());
    ui_->dnsButton->setEnabled(!dnsText().isEmpty());
}

void PingTestWindow::showState() {
    ui_->startButton->setEnabled(!run_.isRunning());
    ui_->stopButton->setEnabled(run_.isRunning());
    ui_->addressField->setEnabled(!run_.isRunning());
    const int received = run_.received();
    const int sent = received + run_.lost();
    ui_->facts->setValue(Received, QStringLiteral("%1 / %2").arg(received).arg(sent));
    ui_->facts->setValue(
        Lost, sent == 0 ? QStringLiteral("-")
                        : QStringLiteral("%1 %").arg(100.0 * run_.lost() / sent, 0, 'f', 0));
    ui_->facts->setValue(
        Times, received == 0 ? QStringLiteral("-")
                             : QStringLiteral("%1 / %2 / %3")
                                   .arg(milliseconds(run_.least()), milliseconds(run_.mean()),
                                        milliseconds(run_.most())));
}
