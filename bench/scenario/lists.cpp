#include <QAbstractListModel>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QtTest>
#include <algorithm>
#include <vector>

#include "app/main_window.h"
#include "app/window_form.h"
#include "base/device_folders.h"
#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "link/device_message.h"
#include "sim/common/portrait.h"
#include "sim/controller/controller_sim.h"
#include "sim/controller/log_store.h"
#include "ui/picture_shelf.h"
#include "ui/row_list.h"
#include "ui/theme.h"

namespace {

constexpr int kLogs = 10000;
constexpr int kPictures = 500;
constexpr QSize kPicture(4000, 3000);
constexpr int kThrows = 8;
constexpr double kMegabyte = 1024.0 * 1024;

/// Notes the milliseconds between two frames of a list that moves.
class FrameWatch : public QObject {
 public:
    explicit FrameWatch(const RowList* list) : list_(list) { qApp->installEventFilter(this); }
    std::vector<double> gaps;

    void begin() {
        timer_.start();
        value_ = list_->verticalScrollBar()->value();
        moves_ = false;
    }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const int value = list_->verticalScrollBar()->value();
        if (event->type() == QEvent::Paint && watched == list_->viewport() && value != value_) {
            const double gap = static_cast<double>(timer_.nsecsElapsed()) / 1e6;
            timer_.start();
            if (moves_)
                gaps.push_back(gap);
            moves_ = true;
            value_ = value;
        }
        return QObject::eventFilter(watched, event);
    }

 private:
    const RowList* const list_;
    QElapsedTimer timer_;
    int value_ = 0;
    bool moves_ = false;
};

/// A finger that throws the list upwards, until it lies still again.
void throwUp(QWidget& window, const RowList* list) {
    constexpr int kSteps = 6;
    constexpr int kStep = 60;
    constexpr int kStepTime = 10;
    constexpr int kStill = 150;
    QPoint at(240, 650);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, at);
    for (int i = 0; i < kSteps; ++i)
        QTest::mouseMove(window.windowHandle(), at -= QPoint(0, kStep), kStepTime);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, at, 1);
    for (int before = -1; before != list->verticalScrollBar()->value();) {
        before = list->verticalScrollBar()->value();
        runEvents(kStill);
    }
}

/// Gaps between the frames of @p list while it is thrown again and again.
std::vector<double> gapsOf(QWidget& window, const RowList* list) {
    FrameWatch watch(list);
    for (int i = 0; i < kThrows; ++i) {
        watch.begin();
        throwUp(window, list);
    }
    return watch.gaps;
}

/// Megabytes of this process. What a thread allocates lies in an arena of its own, so the allocator
/// is not asked.
double resident() {
    return residentMemory(QStringLiteral("self"));
}

/// As many rows that say nothing, for what a list costs by itself.
class PlainModel : public QAbstractListModel {
 public:
    using QAbstractListModel::QAbstractListModel;
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : kLogs;
    }
    QVariant data(const QModelIndex&, int) const override { return {}; }
};

class PlainPainter : public RowPainter {
 public:
    using RowPainter::RowPainter;

 protected:
    void paintRow(QPainter*, const QRect&, const QModelIndex&, const RowState&) const override {}
};

std::vector<double> plainGaps(MainWindow& window) {
    RowList list(window.getActivateWindowForm());
    list.setGeometry(0, 128, Theme::kScreenWidth, 576);
    list.setRowPainter(new PlainPainter(&list, 88));
    list.setModel(new PlainModel(&list));
    list.show();
    return gapsOf(window, &list);
}

void printGaps(const std::vector<double>& gaps, const std::vector<double>& plain) {
    const auto worst = [](const std::vector<double>& values) {
        return *std::max_element(values.begin(), values.end());
    };
    Figures::row("frames while thrown", static_cast<double>(gaps.size()), "");
    Figures::row("gap between two frames, median", Figures::median(gaps), "ms");
    Figures::row("gap, longest", worst(gaps), "ms", "wanted: at most 33");
    Figures::row("the same of empty rows, median", Figures::median(plain), "ms");
    Figures::row("the same of empty rows, longest", worst(plain), "ms");
    Figures::row("ratio of the medians", Figures::median(gaps) / Figures::median(plain), "");
    Figures::row("ratio of the longest", worst(gaps) / worst(plain), "");
}

/// A store of events that have a picture each.
void layLogs() {
    const QString data = DevicePaths::at(QStringLiteral("/mnt/data"));
    portrait::saveSnapshot(data, QStringLiteral("face"), 1);
    const QString images = DevicePaths::at(QLatin1String(DeviceFolders::kImages));
    QVector<GUI_LOGDATA> logs;
    for (int i = 0; i < kLogs; ++i) {
        const QString name = QStringLiteral("%1.jpg").arg(i);
        QFile::link(images + QStringLiteral("face.jpg"), images + name);
        GUI_LOGDATA log{};
        setFieldText(log.userId, QStringLiteral("010%1").arg(20000000 + i));
        setFieldText(log.name, QStringLiteral("Person %1").arg(i));
        setFieldText(log.visiblePicture, name);
        log.eventStatus = 1;
        log.year = 26;
        log.month = 3;
        log.day = 9;
        log.hour = static_cast<quint8>(i / 3600);
        log.minute = static_cast<quint8>(i / 60 % 60);
        log.second = static_cast<quint8>(i % 60);
        logs.append(log);
    }
    LogStore(data).add(logs);
}

/// As large as a camera makes them, with so much to be seen that none is easy to read.
void layPictures() {
    const QDir folder(DevicePaths::at(QLatin1String(DeviceFolders::kBackgrounds)));
    folder.mkpath(QStringLiteral("."));
    QImage picture(kPicture, QImage::Format_RGB32);
    QPainter painter(&picture);
    QRandomGenerator random(1);
    for (int i = 0; i < 20000; ++i)
        painter.fillRect(random.bounded(kPicture.width()), random.bounded(kPicture.height()),
                         random.bounded(400), random.bounded(300),
                         QColor(random.generate() | ~0xffffffU));
    painter.end();
    const QString first = folder.filePath(QStringLiteral("000.jpg"));
    picture.save(first);
    for (int i = 1; i < kPictures; ++i)
        QFile::copy(first,
                    folder.filePath(QStringLiteral("%1.jpg").arg(i, 3, 10, QLatin1Char('0'))));
}

bool waitFor(const std::function<bool()>& done) {
    constexpr int kLongest = 30000;
    return QTest::qWaitFor(done, kLongest);
}

bool measureLogs(MainWindow& window, const std::vector<double>& plain) {
    window.changeWindow(QStringLiteral("info_logSearchWindow"));
    QMetaObject::invokeMethod(window.getActivateWindowForm(), "searchButtonTouch");
    auto* const screen = window.getWindow(QStringLiteral("info_logListWindow"));
    if (!waitFor([&] { return window.getActivateWindowForm() == screen; }))
        return false;
    auto* const list = screen->findChild<RowList*>();
    auto* const shelf = screen->findChild<PictureShelf*>();
    const double before = resident();
    QAbstractItemModel* const rows = list->model();
    if (!waitFor([&] { return rows->rowCount() == 30; }))
        return false;
    while (rows->rowCount() < kLogs) {
        const int count = rows->rowCount();
        if (rows->canFetchMore({}))
            rows->fetchMore({});
        if (!waitFor([&] { return rows->rowCount() > count && rows->rowCount() % 10 == 0; }))
            return false;
        runEvents(0);
    }
    list->rewind();
    const std::vector<double> gaps = gapsOf(window, list);
    // Every picture that there is has been asked for, so the shelf is as full as it gets.
    for (int value = 0; value < list->verticalScrollBar()->maximum(); value += 500) {
        list->verticalScrollBar()->setValue(value);
        runEvents(5);
    }
    waitFor([&] { return shelf->isIdle(); });
    Figures::title("List of 10,000 logs");
    printGaps(gaps, plain);
    Figures::row("growth of resident memory", resident() - before, "MB", "wanted: at most 16");
    Figures::row("pictures held", shelf->held() / kMegabyte, "MB");
    return true;
}

bool measureGrid(MainWindow& window, const std::vector<double>& plain) {
    layPictures();
    const double before = resident();
    window.changeWindow(QStringLiteral("enviscreen_imageselect"));
    const WindowForm* const screen = window.getActivateWindowForm();
    auto* const list = screen->findChild<RowList*>();
    auto* const shelf = screen->findChild<PictureShelf*>();
    const std::vector<double> gaps = gapsOf(window, list);
    waitFor([&] { return shelf->isIdle(); });
    Figures::title("Grid of 500 pictures of 4000x3000");
    printGaps(gaps, plain);
    // From the first to the last, each read.
    double most = 0;
    for (int value = 0; value < list->verticalScrollBar()->maximum(); value += 700) {
        list->verticalScrollBar()->setValue(value);
        runEvents(0);
        waitFor([&] { return shelf->isIdle(); });
        most = std::max(most, resident() - before);
    }
    Figures::row("growth of resident memory, at most", most, "MB", "wanted: at most 32");
    Figures::row("previews held", shelf->held() / kMegabyte, "MB");
    return true;
}

}  // namespace

bool measureLists() {
    // Before the first path is asked for: the ports are read together with the root.
    const QString root = QFile::decodeName(qgetenv("ZEL_ROOT"));
    ControllerSim sim(0, 0, root + QStringLiteral("/mnt/data"));
    qputenv("ZEL_LINK_PORT", QByteArray::number(sim.port()));
    sim.execute(QStringLiteral("settings screen.menuTimeout 3"));
    layLogs();
    // A restart that was planned has no boot screen, which would leave for the standby screen.
    QFile(DevicePaths::at(QStringLiteral("/mnt/data/rebootchkr"))).open(QIODevice::WriteOnly);
    MainWindow window;
    window.show();
    if (!waitFor([&] { return window.settingsArrived(); }))
        return false;
    window.changeWindow(QStringLiteral("info_keyDataWindow"));
    const std::vector<double> plain = plainGaps(window);
    return measureLogs(window, plain) && measureGrid(window, plain);
}
