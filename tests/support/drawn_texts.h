#pragma once

#include <QColor>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <QWidget>

#include <vector>

namespace brevlin::test {

/// A piece of text as a widget painted it; points of that widget.
struct DrawnText
{
    QString text;
    QColor color;
    QRectF ink;     ///< what the glyphs cover
    QRectF visible; ///< what of the widget that painted it can be seen
};

/// Records the texts that are painted on it, and nothing else.
class TextRecorder final : public QPaintDevice
{
public:
    TextRecorder(const QSize& size, int pixelRatio) : m_size(size), m_pixelRatio(pixelRatio), m_engine(*this)
    {}

    QPaintEngine* paintEngine() const override { return &m_engine; }

    std::vector<DrawnText> texts;

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_size.width() * m_pixelRatio;
        case PdmHeight:
            return m_size.height() * m_pixelRatio;
        case PdmDevicePixelRatio:
            return m_pixelRatio;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(m_pixelRatio * devicePixelRatioFScale());
        default:
            return 96; // dots per inch, the only other thing that is asked for
        }
    }

private:
    class Engine final : public QPaintEngine
    {
    public:
        explicit Engine(TextRecorder& recorder) : QPaintEngine(AllFeatures), m_recorder(recorder) {}

        bool begin(QPaintDevice* /*device*/) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState& /*state*/) override {}
        void drawPath(const QPainterPath& /*path*/) override {}
        void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
        void drawPixmap(const QRectF& /*to*/, const QPixmap& /*pixmap*/, const QRectF& /*from*/) override {}
        void drawTextItem(const QPointF& position, const QTextItem& item) override
        {
            if (item.text().trimmed().isEmpty())
                return;
            const double scale = 1.0 / m_recorder.m_pixelRatio;
            const auto points = [scale](const QRectF& pixels) {
                return QRectF(pixels.topLeft() * scale, pixels.size() * scale);
            };
            const QRectF ink = QFontMetricsF(item.font()).tightBoundingRect(item.text()).translated(position);
            QRegion visible = systemClip();
            if (painter()->hasClipping())
                visible &= painter()->deviceTransform().map(painter()->clipRegion());
            m_recorder.texts.push_back({item.text(), painter()->pen().color(),
                                        points(painter()->deviceTransform().mapRect(ink)),
                                        points(visible.boundingRect())});
        }
        Type type() const override { return User; }

    private:
        TextRecorder& m_recorder;
    };

    QSize m_size;
    int m_pixelRatio;
    mutable Engine m_engine;
};

/// Every text of the widget and its children as it is painted now, on a screen of so many pixels a point.
inline std::vector<DrawnText> drawnTexts(QWidget& widget, int pixelRatio)
{
    TextRecorder recorder(widget.size(), pixelRatio);
    widget.render(&recorder, {}, {}, QWidget::DrawChildren);
    return std::move(recorder.texts);
}

} // namespace brevlin::test
