#include "app/TintedIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace {

class TintedSvg : public QIconEngine {
public:
    explicit TintedSvg(const QString& path) : m_path(path) {}

    QIconEngine* clone() const override { return new TintedSvg(m_path); } // owned by the caller

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode,
               QIcon::State state) override {
        const QSize pixels = place.size() * painter->device()->devicePixelRatio();
        painter->drawPixmap(place, pixmap(pixels, mode, state));
    }

    QPixmap pixmap(const QSize& pixels, QIcon::Mode mode, QIcon::State /*state*/) override {
        QPixmap image(pixels);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        QSvgRenderer(m_path).render(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter.fillRect(image.rect(),
                         QGuiApplication::palette().color(group, QPalette::ButtonText));
        return image;
    }

private:
    QString m_path;
};

} // namespace

QIcon MakeTintedIcon(const QString& path) {
    return QIcon(new TintedSvg(path)); // owned by the icon
}
