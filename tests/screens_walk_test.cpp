#include <QAbstractItemView>
#include <QBackingStore>
#include <QHash>
#include <QLabel>
#include <QSet>
#include <QTextDocument>
#include <QtTest>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/administrator_session.h"
#include "app/screen_titles.h"
#include "base/device_paths.h"
#include "link/device_link.h"
#include "tests/support/finger.h"
#include "tools/gallery/gallery_states.h"
#include "tools/gallery/looks.h"
#include "tools/gallery/paint_recorder.h"
#include "tools/gallery/stage.h"
#include "ui/combo.h"
#include "ui/dialog_overlay.h"
#include "ui/input_field.h"
#include "ui/pictures.h"
#include "ui/row_list.h"
#include "ui/scroll_list.h"
#include "ui/theme.h"
#include "ui/top_bar.h"
#include "ui/touch_key_form.h"
#include "ui/touch_shield.h"

namespace {

constexpr int kSmallestText = 18;
constexpr int kLowestTouch = 56;
constexpr int kNarrowestTouch = 48;
/// A difference between two grays that an eye can see, and so many pixels of one: the edges of
/// large letters are not quite the same each time.
constexpr int kSeen = 16;
constexpr int kEdges = 200;

/// A text on the screen and the widget that shows it.
struct ShownText : PaintRecorder::Text {
    QWidget* widget;
};

/// Renders a widget with all its children and notes who draws which text.
class Reader : public QObject {
 public:
    explicit Reader(QWidget* root) : recorder_(root->size()) {
        qApp->installEventFilter(this);
        root->render(&recorder_, QPoint(), QRegion(), QWidget::DrawChildren);
        attribute();
    }
    QVector<ShownText> texts;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            attribute();
            painting_ = static_cast<QWidget*>(watched);
        }
        return false;
    }

 private:
    void attribute() {
        for (int i = texts.size(); i < recorder_.texts().size(); ++i)
            texts.append({recorder_.texts().at(i), painting_});
    }

    PaintRecorder recorder_;
    QWidget* painting_ = nullptr;
};

/// One layer of what is to be seen, looked at in its own coordinates: nothing in it may be
/// unreadable, be out of reach, or get into the way of something else.
class Layer {
 public:
    /// @p covered is what another layer hides of it.
    Layer(const QString& name, QWidget* root, const QRect& covered)
        : name_(name), root_(root), covered_(covered), texts_(Reader(root).texts) {
        const QList<WidgetButton*> buttons = root->findChildren<WidgetButton*>();
        for (WidgetButton* button : buttons) {
            if (button->isVisible() && button->isEnabled() && button->isTouchable() &&
                !seen(button).isEmpty() && !covered.intersects(place(button)))
                buttons_.append(button);
        }
    }

    QStringList faults() {
        for (int i = 0; i < texts_.size(); ++i)
            lookAtText(i);
        for (int i = 0; i < buttons_.size(); ++i)
            lookAtButton(i);
        const QList<QWidget*> widgets = root_->findChildren<QWidget*>();
        for (QWidget* widget : widgets) {
            if (widget->isVisible())
                lookAtContent(widget);
        }
        return faults_;
    }

 private:
    QRect place(const QWidget* widget) const {
        return {widget->mapTo(root_, QPoint()), widget->size()};
    }
    /// What is not cut off by the widgets that it lies in.
    QRect seen(const QWidget* widget) const {
        QRect rect = root_->rect();
        for (const QWidget* one = widget; one != root_; one = one->parentWidget())
            rect &= place(one);
        return rect;
    }
    void fault(const QWidget* widget, const QString& what) {
        faults_.append(QStringLiteral("%1: %2 (%3): %4")
                           .arg(name_, widget->objectName(),
                                QLatin1String(widget->metaObject()->className()), what));
    }

    /// More than by the rounding of edges.
    static bool meet(const QRect& one, const QRect& other) {
        const QRect common = one & other;
        return common.width() > 1 && common.height() > 1;
    }

    void lookAtText(int number) {
        const ShownText& text = texts_.at(number);
        const QRect ink = text.ink & seen(text.widget);
        if (ink.isEmpty() || covered_.intersects(ink))
            return;
        const auto about = [&](const char* what) {
            fault(text.widget, QStringLiteral("\"%1\" %2").arg(text.text, QLatin1String(what)));
        };
        if (text.size < kSmallestText)
            about("is too small");
        // A chosen value may be any length; it is cut and can be seen whole in its list.
        if (text.text.contains(QChar(0x2026)) && qobject_cast<Combo*>(text.widget) == nullptr)
            about("is cut");
        const auto* field = qobject_cast<InputField*>(text.widget);
        const bool scrolls = field != nullptr && field->isEditing();
        // Of a list of rows the first and the last one may be seen in part.
        QRect room = place(text.widget).adjusted(-1, -1, 1, 1);
        if (qobject_cast<QAbstractItemView*>(text.widget->parentWidget()) != nullptr)
            room.adjust(0, -RowPainter::kHeight, 0, RowPainter::kHeight);
        if (!scrolls && !room.contains(text.ink))
            about("does not fit");
        for (int i = 0; i < number; ++i) {
            if (meet(ink, texts_.at(i).ink & seen(texts_.at(i).widget)))
                about(qUtf8Printable(QStringLiteral("overlaps \"%1\"").arg(texts_.at(i).text)));
        }
        for (const WidgetButton* button : qAsConst(buttons_)) {
            if (button != text.widget && !button->isAncestorOf(text.widget) &&
                meet(ink, seen(button)))
                about(qUtf8Printable(QStringLiteral("overlaps ") + button->objectName()));
        }
    }

    void lookAtButton(int number) {
        const WidgetButton* button = buttons_.at(number);
        const QRect area = place(button);
        if (button->objectName().isEmpty() ||
            button->objectName() == QLatin1String(button->metaObject()->className()))
            fault(button, QStringLiteral("has no name"));
        if (area.height() < kLowestTouch || area.width() < kNarrowestTouch)
            fault(button,
                  QStringLiteral("is too small: %1x%2").arg(area.width()).arg(area.height()));
        if (!root_->rect().contains(area) && !isInList(button))
            fault(button, QStringLiteral("is not wholly on the screen"));
        for (int i = 0; i < number; ++i) {
            const WidgetButton* other = buttons_.at(i);
            if (!other->isAncestorOf(button) && !button->isAncestorOf(other) &&
                seen(other).intersects(seen(button)))
                fault(button, QStringLiteral("overlaps ") + other->objectName());
        }
    }

    bool isInList(const QWidget* widget) const {
        while (widget != root_) {
            widget = widget->parentWidget();
            if (qobject_cast<const QAbstractScrollArea*>(widget) != nullptr)
                return true;
        }
        return false;
    }

    /// Texts and pictures that are not there, and labels that do not hold theirs.
    void lookAtContent(QWidget* widget) {
        QList<QByteArray> names = widget->dynamicPropertyNames();
        for (int i = 0; i < widget->metaObject()->propertyCount(); ++i)
            names.append(widget->metaObject()->property(i).name());
        for (const QByteArray& name : qAsConst(names)) {
            const QStringList values = widget->property(name.constData()).toStringList();
            for (const QString& value : values) {
                const bool missing =
                    (name.toLower().contains("key") &&
                     MainWindow::getMainWindow()->getScript(value).script.isEmpty()) ||
                    (name == "iconName" && Pictures::icon(value).isNull());
                if (!value.isEmpty() && missing)
                    fault(widget, QStringLiteral("lacks ") + value);
            }
        }
        const auto* label = qobject_cast<QLabel*>(widget);
        if (label == nullptr || !label->pixmap(Qt::ReturnByValue).isNull())
            return;
        const QSize room = label->contentsRect().size();
        QTextDocument document;
        document.setDocumentMargin(0);
        document.setDefaultFont(label->font());
        document.setHtml(label->text());
        document.setTextWidth(label->wordWrap() ? room.width() : -1);
        const QSize needed(qCeil(document.idealWidth()), qCeil(document.size().height()));
        if (document.isEmpty())
            fault(label, QStringLiteral("is empty"));
        else if (needed.width() > room.width() + 1 || needed.height() > room.height() + 1)
            fault(label, QStringLiteral("needs %1x%2 and has %3x%4")
                             .arg(needed.width())
                             .arg(needed.height())
                             .arg(room.width())
                             .arg(room.height()));
    }

    const QString name_;
    QWidget* const root_;
    const QRect covered_;
    const QVector<ShownText> texts_;
    QVector<WidgetButton*> buttons_;
    QStringList faults_;
};

}  // namespace

class ScreensWalkTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        TouchShield::setTime(0);
        stage = std::make_unique<Stage>();
    }
    void cleanupTestCase() { stage.reset(); }

    void everythingCanBeReadAndTouched() {
        QStringList faults;
        QSet<QString> screens;
        Looks looks;
        for (int language = 0; language < stage->languages().size(); ++language) {
            stage->restart(language);
            const QVector<GalleryState> states = galleryStates(window());
            QImage asItComesUp;
            for (const GalleryState& state : states) {
                state.show(*stage);
                const QString name = QString::number(language) + QLatin1Char(' ') + state.file;
                const QImage picture = stage->picture();
                if (state.arrange == nullptr)
                    asItComesUp = picture;
                else if (picture == asItComesUp)
                    faults += name + QStringLiteral(": there is nothing new to be seen");
                screens.insert(window().getActivateWindowForm()->getTitle());
                looks.add(state.file, *stage);
                faults += faultsOf(name);
                const QRect stale = staleBox();
                if (!stale.isEmpty())
                    faults += QStringLiteral("%1: not painted anew from %2, %3 on")
                                  .arg(name)
                                  .arg(stale.x())
                                  .arg(stale.y());
            }
        }
        QFile kept(QStringLiteral(LOOKS_FILE));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        for (const QString& state : looks.changedSince(kept.readAll()))
            faults += state + QStringLiteral(
                                  ": looks different; if it is to, keep zel-gallery's "
                                  "looks.txt as tools/gallery/looks.txt");
        // One message holds only the first few, and the warnings may all be spent.
        for (const QString& fault : qAsConst(faults))
            std::fprintf(stderr, "%s\n", qUtf8Printable(fault));
        QVERIFY(faults.isEmpty());
        QCOMPARE(screens.size(), titles().size());  // each has a title of its own
    }

    void everyWayLeadsSomewhere() {
        const QStringList withoutBar{QStringLiteral("bootWindow"), QStringLiteral("stayWindow"),
                                     QStringLiteral("liveWindow"),
                                     QStringLiteral("recognizeWindow")};
        QSet<QString> reached;
        QSet<QPair<QString, QString>> names;  // of a menu's item, and of the screen it leads to
        for (const QString& title : titles()) {
            stage->open(title);
            const auto* bar = active()->findChild<TopBar*>();
            QCOMPARE(bar == nullptr, withoutBar.contains(title));
            QVERIFY2(!bar || bar->isBackVisible() || bar->isHomeVisible() ||
                         !bar->neutralKey().isEmpty(),
                     qPrintable(title));
            QHash<WidgetButton*, QString> targets;
            const QList<WidgetButton*> buttons = active()->findChildren<WidgetButton*>();
            for (WidgetButton* button : buttons) {
                const bool home = bar != nullptr && button == bar->button(TopBar::Home);
                const bool forward = bar != nullptr && button == bar->button(TopBar::Forward);
                const bool back = bar != nullptr && button == bar->button(TopBar::Back);
                const QString target = home      ? homeOf(title)
                                       : back    ? bar->property("backTarget").toString()
                                       : forward ? bar->property("forwardTarget").toString()
                                                 : button->property("target").toString();
                if (!button->isHidden() && button->isEnabled() && (back || !target.isEmpty()))
                    targets.insert(button, target);
            }
            for (auto way = targets.cbegin(); way != targets.cend(); ++way) {
                stage->open(title);
                if (auto* list = active()->findChild<ScrollList*>())
                    list->reveal(way.key());
                tap(way.key());
                const QString next = active()->getTitle();
                QVERIFY2(next != title, qPrintable(title));
                QCOMPARE(next, *way);
                QCOMPARE(visibleScreens(), QStringList(next));
                reached.insert(next);
                const auto* nextBar = active()->findChild<TopBar*>();
                // The steps of one flow all have the flow's title.
                if (bar && nextBar && nextBar->titleKey() != bar->titleKey() &&
                    way.key()->property("target").isValid())
                    names.insert({way.key()->property("textKey").toString(), nextBar->titleKey()});
            }
        }
        // The others come up at a touch that does more than that, or by themselves.
        QStringList others = titles();
        for (const QString& title : qAsConst(reached))
            others.removeOne(title);
        QCOMPARE(others.join(QLatin1Char(' ')),
                 QStringLiteral(
                     "bootWindow usbUploadFileSelector foodMenuWindow userEnroll_cardTagWindow "
                     "userEnroll_reCardTagWindow userEnroll_FaceWindow recognizeWindow "
                     "inputSubWindow userSearch_cardWindow userSearch_InfoWindow "
                     "info_logListWindow UsbOutLogWindow "
                     "upgradingWindow InputAdminPassword InputDestinationForm"));
        for (int language = 0; language < stage->languages().size(); ++language) {
            stage->restart(language);
            const auto words = [this](const QString& key) {
                return window().getScript(key).script.remove(
                    QRegularExpression(QStringLiteral("-?<br>| ")));
            };
            for (const auto& [item, screen] : qAsConst(names))
                QCOMPARE(words(item), words(screen));
        }
    }

    void everyScreenOutlivesTheLink() {
        auto* link = window().findChild<DeviceLink*>();
        for (const QString& title : titles()) {
            stage->open(title);
            QTRY_VERIFY(link->connected());
            while (stage->controller().hasPendingConnections())
                delete stage->controller().nextPendingConnection();
            QTRY_VERIFY(!link->connected());
            QCOMPARE(visibleScreens(), QStringList(title));
            tap(active());
            // Rather than wait for the next attempt.
            link->open(DevicePaths::linkPort());
        }
    }

 private:
    MainWindow& window() { return stage->window(); }
    WindowForm* active() { return window().getActivateWindowForm(); }

    /// An enrolment returns to where it began.
    static QString homeOf(const QString& title) {
        return AdministratorSession::isEnrolmentStep(title) || title == screen_title::kEnrolMenu
                   ? screen_title::kUserMenu
                   : screen_title::kStandby;
    }

    QStringList titles() {
        QStringList all;
        for (const WindowForm* screen : window().windowList())
            all.append(screen->getTitle());
        return all;
    }
    QStringList visibleScreens() {
        QStringList visible;
        for (const WindowForm* screen : window().windowList()) {
            if (screen->isVisible())
                visible.append(screen->getTitle());
        }
        return visible;
    }

    /// Around what is on the panel otherwise than it would be painted now.
    QRect staleBox() {
        // The window is exposed by the system, which may have hidden it.
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
        const auto* shown = dynamic_cast<QImage*>(window().backingStore()->paintDevice());
        if (shown == nullptr || shown->size() != window().size())
            return window().rect();
        QImage now(shown->size(), shown->format());
        window().render(&now);
        QRect box;
        int count = 0;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x) {
                if (std::abs(qGray(shown->pixel(x, y)) - qGray(now.pixel(x, y))) < kSeen)
                    continue;
                box |= QRect(x, y, 1, 1);
                ++count;
            }
        }
        return count > kEdges ? box : QRect();
    }

    void tap(const QWidget* widget) { Finger(&window()).tap(widget); }

    QStringList faultsOf(const QString& name) {
        QStringList faults;
        QVector<QWidget*> layers{DialogOverlay::current(&window())};
        QRect covered;
        if (layers.first() == nullptr) {
            layers = {active()};
            auto* keypad = window().findChild<TouchKeyForm*>();
            if (keypad->isVisible()) {
                covered = keypad->geometry().translated(-active()->pos());
                faults += Layer(name, keypad, QRect()).faults();
            }
        }
        const QList<ScrollList*> lists = layers.first()->findChildren<ScrollList*>();
        for (const ScrollList* list : lists) {
            if (list->isVisible())
                layers.append(list->widget());
        }
        for (QWidget* layer : qAsConst(layers))
            faults += Layer(name, layer, layer == layers.first() ? covered : QRect()).faults();
        return faults;
    }

    std::unique_ptr<Stage> stage;
};

QTEST_MAIN(ScreensWalkTest)
#include "screens_walk_test.moc"
