#include "Platform/Linux/Qt/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

class DrawnIconEngine final : public QIconEngine {
public:
    explicit DrawnIconEngine(IconDrawing drawing) : drawing_(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const qreal ratio = painter->device()->devicePixelRatio();
        const int side = std::min(rect.width(), rect.height());
        QImage image = drawing_(qRound(side * ratio));
        image.setDevicePixelRatio(ratio);
        painter->drawImage(
            QPointF(rect.x() + (rect.width() - side) / 2.0, rect.y() + (rect.height() - side) / 2.0), image);
    }

    // The base would paint onto whatever the memory holds.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    }

    [[nodiscard]] QIconEngine* clone() const override { return new DrawnIconEngine(drawing_); }

    bool isNull() override { return false; }

private:
    IconDrawing drawing_;
};

} // namespace

QIcon drawnIcon(IconDrawing drawing) {
    // The icon owns its engine.
    return QIcon(new DrawnIconEngine(std::move(drawing)));
}

} // namespace tarvex
