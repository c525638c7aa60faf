#pragma once
// The picture of an image map: boundaries drawn with Qt's painter, one
// painter path per zone for colour and hit test, and a legend whose swatches
// are the zone layers where no zone geography exists.

#include <QPainterPath>
#include <QWidget>
#include <utility>
#include <vector>

#include "maps/MapGeometry.h"
#include "maps/ucLayer.h"

namespace qvrl::qt {

class MapWidget : public QWidget {
    Q_OBJECT
public:
    MapWidget(ucImageMap& model, QWidget* parent);
    QSize sizeHint() const override { return {520, 560}; }

    // Widget position of a point in degrees, and back.
    QPointF ToWidget(MapPoint p) const;
    MapPoint ToMap(QPointF w) const;
    // The zone layer under a widget position (-1: base layer). Swatches first.
    int32_t LayerAt(QPointF w) const;
    // Centre of the swatch of a zone layer, for a user who points at it.
    QPointF SwatchCentre(int32_t layer) const;
    const QString& Attribution() const { return attribution_; }

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void resizeEvent(QResizeEvent*) override;

private:
    void Rebuild();
    QRectF MapArea() const;
    QRectF SwatchRect(int32_t layer) const;
    void Pointer(QPointF pos, Qt::MouseButtons buttons, Qt::KeyboardModifiers mods);
    ucImageMap& m_;
    QPainterPath outline_;
    // One path per zone layer, in widget coordinates.
    std::vector<QPainterPath> zones_;
    // The shapes of the municipalities that carry a zone, with their layer.
    std::vector<std::pair<const MapShape*, int32_t>> coloured_;
    QString attribution_;
    int legendRows_ = 0;
};

}  // namespace qvrl::qt
