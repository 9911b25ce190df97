#include "tools/gallery/stage.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QFontDatabase>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QTcpSocket>
#include <QtEndian>
#include <cstring>

#include "app/fonts.h"
#include "app/message_dispatch.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/controller/device.h"
#include "ui/dialog_overlay.h"
#include "ui/notice_strip.h"
#include "ui/row_list.h"
#include "ui/scripted.h"
#include "ui/scroll_list.h"
#include "ui/spinner.h"
#include "ui/widget_button.h"

namespace {

/// An index of the menu time-outs: never.
constexpr int kNever = 3;

quint16 freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

/// Keeps calls to the management service of the settings without an answer, be there one or not.
/// Several stages of a machine share the port.
int silentService(const AddressBlock& own) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int shared = 1;
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = qToBigEndian(own.managerPort);
    std::memcpy(&name.sin_addr, own.managerAddress, sizeof name.sin_addr);
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEPORT, &shared, sizeof shared);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
        ::listen(socket, SOMAXCONN) != 0)
        qWarning("the management service's port is taken");
    return socket;
}

/// What is on the USB stick.
void layStick(const DeviceRoot& root) {
    const QDir stick(root.path("/mnt/usb/ZEL01"));
    stick.mkpath(QStringLiteral("backup"));
    stick.mkpath(QStringLiteral("images"));
    for (const char* file :
         {"user_20260301.dat", "user_20260308.dat", "user_20260309.dat", "settings_20260301.dat",
          "card_key.dat", "images/background.png", "images/logo.png"})
        root.write((QByteArray("/mnt/usb/ZEL01/") + file).constData(), {});
}

void send(QEvent::Type type, WidgetButton* button) {
    const QPointF finger = button->rect().center();
    QMouseEvent event(type, finger, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(button, &event);
}

/// Lets layouts and deferred calls have their effect; no timer runs out meanwhile. A row that has
/// grown has the layouts around it ask once more.
void settle() {
    constexpr int kRounds = 3;
    for (int round = 0; round < kRounds; ++round)
        QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

Stage::Stage() : settings_(factorySettings()), service_(silentService(settings_.network.own)) {
    settings_.screen.menuTimeout = kNever;
    settings_.screen.sleepMode = 0;
    setFieldText(settings_.setup.adminPassword, QStringLiteral("0000"));
    layStick(root_);
    // Holding the port keeps the terminal from reaching a controller that is none of ours.
    controller_.listen(QHostAddress::LocalHost);
    qputenv("ZEL_LINK_PORT", QByteArray::number(controller_.serverPort()));
    qputenv("ZEL_REST_PORT", QByteArray::number(freePort()));
    Fonts::configure();
    restart();
}

Stage::~Stage() {
    window_.reset();
    ::close(service_);
}

void Stage::restart() {
    clear();
    window_.reset();
    hangUp();
    // The next terminal registers its own.
    QFontDatabase::removeAllApplicationFonts();
    window_ = std::make_unique<MainWindow>();
    tellSettings(settings_);
    window_->show();
    while (!window_->linkUp())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    controllerLost_ = false;
}

void Stage::loseController() {
    controllerLost_ = true;
    hangUp();
    while (window_->linkUp())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void Stage::hangUp() {
    while (QTcpSocket* socket = controller_.nextPendingConnection())
        delete socket;
}

void Stage::tellSettings(const _gui_menu_& settings) {
    window_->sendTestPacket(command::Settings, sizeof settings,
                            reinterpret_cast<const char*>(&settings));
}

void Stage::changeSettings(const _gui_menu_& settings) {
    settingsChanged_ = true;
    tellSettings(settings);
}

_gui_menu_ Stage::mealSettings() const {
    _gui_menu_ settings = settings_;
    settings.setup.operation = Operation::Meals;
    settings.operation.attendanceMode = 0;
    settings.operation.saveSimpleAccess = 0;
    settings.operation.weekdayIn = {7, 0, 9, 0};
    settings.operation.weekdayOut = {11, 30, 13, 30};
    settings.operation.saturdayIn = {17, 30, 19, 30};
    settings.operation.saturdayOut = {22, 0, 2, 0};
    return settings;
}

void Stage::restart(int language) {
    settings_.setup.language = static_cast<quint8>(language);
    restart();
}

QStringList Stage::languages() const {
    QFile file(root_.path("/zel1/script_list.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no list of languages");
    const QJsonArray list =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("list")).toArray();
    QStringList names;
    for (const QJsonValue& language : list)
        names.append(
            QFileInfo(language.toObject().value(QLatin1String("path")).toString()).baseName());
    return names;
}

void Stage::setTime(const QDateTime& time) {
    Clock::fix(time);
    window_->hide();
    window_->show();
}

void Stage::clear() {
    Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
    if (!window_)
        return;
    if (pressed_)
        pressed_->cancelTouch();
    // A screen may have something to say about it.
    if (settingsChanged_) {
        settingsChanged_ = false;
        tellSettings(settings_);
        receive(command::SystemStatus, 0);
    }
    DialogOverlay::closeAll(window_.get());
    const QList<NoticeStrip*> strips = window_->findChildren<NoticeStrip*>();
    for (NoticeStrip* strip : strips)
        strip->hide();
    window_->removeTouchKey();
    for (const QPointer<QWidget>& widget : qAsConst(added_))
        delete widget;
    added_.clear();
    // No report of faults is left to be evaluated.
    receive(command::SelfCheck, 0, QByteArray(4, '\0'));
    settle();
}

void Stage::open(const QString& title) {
    if (controllerLost_)
        restart();
    clear();
    // A screen comes up only when another one was there.
    if (window_->getActivateWindowForm()->getTitle() == title)
        window_->changeWindow(title == QLatin1String("stayWindow") ? QStringLiteral("liveWindow")
                                                                   : QStringLiteral("stayWindow"));
    // They can be had on such a terminal only.
    if (title == QLatin1String("foodMenuWindow"))
        changeSettings(mealSettings());
    window_->session().open();
    window_->changeWindow(title);
}

QImage Stage::picture() {
    QImage image(window_->size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    paint(&image);
    return image;
}

void Stage::paint(QPaintDevice* device) {
    settle();
    const QList<Spinner*> spinners = window_->findChildren<Spinner*>();
    for (Spinner* spinner : spinners) {
        if (!spinner->isVisible())
            continue;
        spinner->hide();
        spinner->show();
    }
    window_->render(device);
}

void Stage::receive(unsigned short code, unsigned char p1, const QByteArray& payload) {
    window_->findChild<MessageDispatch*>()->dispatch(
        {code, p1, 0, static_cast<quint16>(payload.size()), payload.constData()});
}

void Stage::receive(unsigned short code, unsigned char p1, unsigned char p2) {
    window_->findChild<MessageDispatch*>()->dispatch({code, p1, p2, 0, nullptr});
}

void Stage::showAdded() {
    Scripted::applyBelow(window_->getActivateWindowForm(),
                         [this](const QString& key) { return window_->getScript(key); });
    for (const QPointer<QWidget>& widget : qAsConst(added_))
        widget->show();
}

WidgetButton* Stage::button(const QString& name) {
    const QList<WidgetButton*> buttons = window_->findChildren<WidgetButton*>(name);
    for (WidgetButton* button : buttons) {
        if (!button->isVisible())
            continue;
        for (QWidget* up = button; up != nullptr; up = up->parentWidget()) {
            if (auto* list = qobject_cast<ScrollList*>(up))
                list->reveal(button);
        }
        return button;
    }
    qFatal("there is no button %s to touch", qUtf8Printable(name));
}

void Stage::touch(const QString& name) {
    WidgetButton* target = button(name);
    send(QEvent::MouseButtonPress, target);
    send(QEvent::MouseButtonRelease, target);
    settle();
}

void Stage::findFaults(quint32 word) {
    receiveRecord(command::SelfCheck, word);
    window_->dev_selfChkrResult();
}

void Stage::useKeypad(InputField::Characters characters, const char* keys, const char* option) {
    auto* field = add<InputField>(QRect(16, 312, 448, 56));
    field->setObjectName(QStringLiteral("keypadField"));
    field->setAllowedCharacters(characters);
    showAdded();
    window_->showTouchKey(field);
    window_->setTouchKeyOpt(QLatin1String(option));
    const QStringList names = QString::fromUtf8(keys).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& name : names)
        touch(QStringLiteral("key_") + name);
}

void Stage::touchRow(int row) {
    const auto lists = window_->findChildren<RowList*>();
    for (RowList* list : lists) {
        if (!list->isVisible())
            continue;
        const QModelIndex index = list->model()->index(row, 0);
        list->reveal(index);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, list->rowBox(index).center(), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(list->viewport(), &event);
        }
    }
    settle();
}

void Stage::press(const QString& name) {
    pressed_ = button(name);
    send(QEvent::MouseButtonPress, pressed_);
}
