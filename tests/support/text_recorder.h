#pragma once

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QString>
#include <QTransform>
#include <QVector>
#include <algorithm>
#include <map>

/// Keeps the texts that are painted on it, where a picture would keep pixels. A widget rendered on
/// it tells what there is to be read on it, however it draws that.
class TextRecorder : public QPaintDevice {
 public:
    struct Text {
        QString text;
        QRect ink;  // around the glyphs themselves, in the recorder's coordinates
        int size;   // pixels
    };

    explicit TextRecorder(const QSize& size) : size_(size) {}
    QPaintEngine* paintEngine() const override { return &engine_; }
    const QVector<Text>& texts() const { return engine_.texts; }
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
        }
        void drawTextItem(const QPointF& baseline, const QTextItem& item) override {
            const QRectF ink =
                QFontMetricsF(item.font()).tightBoundingRect(item.text()).translated(baseline);
            texts.append(
                {item.text(), transform_.mapRect(ink).toAlignedRect(), item.font().pixelSize()});
        }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}

        QVector<Text> texts;

     private:
        QTransform transform_;
    };

    const QSize size_;
    mutable Engine engine_;
};
