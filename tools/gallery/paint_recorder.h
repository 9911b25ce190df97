#pragma once

#include <QCryptographicHash>
#include <QDataStream>
#include <QFontMetricsF>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <QTransform>
#include <QVector>
#include <algorithm>
#include <iterator>
#include <map>

/// Keeps the texts that are painted on it, and a sum of all that is drawn, where a picture would
/// keep pixels. A widget rendered on it tells what there is to be read on it, however it draws
/// that.
class PaintRecorder : public QPaintDevice {
 public:
    struct Text {
        QString text;
        QRect ink;  // around the glyphs themselves, in the recorder's coordinates
        int size;   // pixels
    };

    explicit PaintRecorder(const QSize& size) : size_(size) {}
    QPaintEngine* paintEngine() const override { return &engine_; }
    const QVector<Text>& texts() const { return engine_.texts; }
    /// Eight hexadecimal digits of what was drawn, how and where.
    QByteArray sum() const { return engine_.drawn.result().left(4).toHex(); }
    bool has(const QString& text) const {
        return std::any_of(texts().begin(), texts().end(),
                           [&text](const Text& one) { return one.text == text; });
    }

 protected:
    int metric(PaintDeviceMetric metric) const override {
        const std::map<int, int> metrics{
            {PdmWidth, size_.width()},
            {PdmHeight, size_.height()},
            {PdmDevicePixelRatio, 1},
            {PdmDevicePixelRatioScaled, static_cast<int>(devicePixelRatioFScale())}};
        const auto known = metrics.find(metric);
        return known == metrics.end() ? 96 : known->second;  // dots per inch
    }

 private:
    class Engine : public QPaintEngine {
     public:
        Engine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        Type type() const override { return User; }
        void updateState(const QPaintEngineState& changed) override {
            if (changed.state() & DirtyTransform)
                transform_ = changed.transform();
            if (changed.state() & (DirtyClipPath | DirtyClipRegion | DirtyClipEnabled))
                clip_ = changed.isClipEnabled() ? changed.painter()->clipBoundingRect() : QRectF();
        }
        void drawTextItem(const QPointF& baseline, const QTextItem& item) override {
            const QRectF ink =
                QFontMetricsF(item.font()).tightBoundingRect(item.text()).translated(baseline);
            texts.append(
                {item.text(), transform_.mapRect(ink).toAlignedRect(), item.font().pixelSize()});
            add(item.text(), item.font().toString(), baseline);
        }
        void drawPixmap(const QRectF& place, const QPixmap& pixmap, const QRectF& part) override {
            addPixels(pixmap.toImage());
            add(place, part);
        }
        void drawPath(const QPainterPath& path) override { add(path); }
        void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
            QPolygonF polygon;
            std::copy_n(points, count, std::back_inserter(polygon));
            add(polygon, static_cast<int>(mode));
        }

        QVector<Text> texts;
        QCryptographicHash drawn{QCryptographicHash::Md5};

     private:
        template <typename... Parts>
        void add(const Parts&... parts) {
            QByteArray bytes;
            QDataStream stream(&bytes, QIODevice::WriteOnly);
            (stream << ... << parts)
                << transform_ << clip_ << painter()->pen() << painter()->opacity();
            const QBrush& brush = painter()->brush();
            if (brush.style() == Qt::TexturePattern)
                addPixels(brush.textureImage());
            else
                stream << brush;
            drawn.addData(bytes);
        }
        void addPixels(const QImage& image) {
            drawn.addData(reinterpret_cast<const char*>(image.constBits()),
                          static_cast<int>(image.sizeInBytes()));
        }

        QTransform transform_;
        QRectF clip_;
    };

    const QSize size_;
    mutable Engine engine_;
};
