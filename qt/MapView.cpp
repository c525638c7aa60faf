#include "MapView.h"

#include <QApplication>
#include <QDialog>
#include <QLayout>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "maps/MapForms.h"
#include "maps/MapGeometry.h"
#include "maps/TownZones.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kSwatchHeight = 22;
constexpr int kFooter = 18;

QColor ZoneColour(int32_t layer, int32_t count) {
    // Light to dark blue: a higher zone is the heavier load.
    const double t = count > 1 ? static_cast<double>(layer) / (count - 1) : 0.0;
    return QColor::fromHsvF(0.58, 0.15 + 0.7 * t, 0.97 - 0.45 * t);
}

Boundaries BaseOf(const MapPicture& p) {
    return p.base == MapPicture::Base::Germany ? Boundaries::GermanMunicipalities : Boundaries::Countries;
}

}  // namespace

MapWidget::MapWidget(ucImageMap& model, QWidget* parent) : QWidget(parent), m_(model) {
    setMouseTracking(true);
    setMinimumSize(360, 400);
    Bind(m_, this, [this] {
        setEnabled(m_.Enabled());
        setVisible(m_.Visible());
        Rebuild();
        update();
    });
}

QRectF MapWidget::MapArea() const {
    const int legend = legendRows_ * kSwatchHeight + 6;
    return QRectF(4, 4, width() - 8, height() - 8 - legend - kFooter);
}

QPointF MapWidget::ToWidget(MapPoint p) const {
    const MapPicture& pic = m_.PictureSource();
    // Equirectangular with the parallels shortened at the middle latitude.
    const double k = std::cos((pic.south + pic.north) / 2.0 * kPi / 180.0);
    const double mw = (pic.east - pic.west) * k, mh = pic.north - pic.south;
    const QRectF a = MapArea();
    const double s = std::min(a.width() / mw, a.height() / mh);
    const double ox = a.left() + (a.width() - mw * s) / 2.0, oy = a.top() + (a.height() - mh * s) / 2.0;
    return {ox + (p.x - pic.west) * k * s, oy + (pic.north - p.y) * s};
}

MapPoint MapWidget::ToMap(QPointF w) const {
    const MapPicture& pic = m_.PictureSource();
    const double k = std::cos((pic.south + pic.north) / 2.0 * kPi / 180.0);
    const double mw = (pic.east - pic.west) * k, mh = pic.north - pic.south;
    const QRectF a = MapArea();
    const double s = std::min(a.width() / mw, a.height() / mh);
    const double ox = a.left() + (a.width() - mw * s) / 2.0, oy = a.top() + (a.height() - mh * s) / 2.0;
    return {pic.west + (w.x() - ox) / (k * s), pic.north - (w.y() - oy) / s};
}

QRectF MapWidget::SwatchRect(int32_t layer) const {
    const int cols = std::max(1, std::min(m_.LayerCount(), 3));
    const double w = (width() - 8.0) / cols;
    const double top = height() - 4.0 - kFooter - legendRows_ * kSwatchHeight;
    return QRectF(4 + (layer % cols) * w, top + (layer / cols) * kSwatchHeight, w - 4, kSwatchHeight - 4);
}

QPointF MapWidget::SwatchCentre(int32_t layer) const { return SwatchRect(layer).center(); }

void MapWidget::Rebuild() {
    const int cols = std::max(1, std::min(m_.LayerCount(), 3));
    legendRows_ = (m_.LayerCount() + cols - 1) / cols;
    const MapPicture& pic = m_.PictureSource();
    outline_ = QPainterPath();
    zones_.assign(static_cast<size_t>(m_.LayerCount()), QPainterPath());
    coloured_.clear();
    attribution_.clear();
    if (width() <= 0 || height() <= 0) return;
    try {
        const Boundaries base = BaseOf(pic);
        const MapLayerShapes& shapes = LoadBoundaries(base);
        attribution_ = QString::fromStdString(BoundaryAttribution(base));
        std::map<std::string, int16_t> zoneOf;
        if (pic.townZone != MapPicture::TownZone::None) {
            CodeList l;
            for (int32_t i = 0; i < m_.LayerCount(); ++i)
                l.Add(m_.ucLayers(i).ToolTipText(), CInt(m_.ucLayers(i).MyValue()));
            zoneOf = TownZoneCodes(pic.townZone, l);
        }
        outline_.setFillRule(Qt::OddEvenFill);
        for (const MapShape& s : shapes.shapes) {
            if (s.max.x < pic.west || s.min.x > pic.east || s.max.y < pic.south || s.min.y > pic.north) continue;
            QPainterPath path;
            path.setFillRule(Qt::OddEvenFill);
            for (const auto& ring : s.rings) {
                if (ring.empty()) continue;
                QPolygonF poly;
                poly.reserve(static_cast<qsizetype>(ring.size()));
                for (const MapPoint& p : ring) poly << ToWidget(p);
                path.addPolygon(poly);
                path.closeSubpath();
            }
            outline_.addPath(path);
            const auto it = zoneOf.find(s.id);
            const int32_t layer = it == zoneOf.end() ? -1 : m_.LayerOfCode(it->second);
            if (layer >= 0) {
                zones_[static_cast<size_t>(layer)].addPath(path);
                coloured_.emplace_back(&s, layer);
            }
        }
    } catch (const RuntimeError& e) {
        attribution_ = QString::fromStdString(e.description());
    }
}

void MapWidget::resizeEvent(QResizeEvent*) { Rebuild(); }

int32_t MapWidget::LayerAt(QPointF w) const {
    for (int32_t i = 0; i < m_.LayerCount(); ++i)
        if (SwatchRect(i).contains(w)) return i;
    if (!MapArea().contains(w)) return -1;
    // The municipality under the pointer, by its boundary in degrees.
    const MapPoint p = ToMap(w);
    for (const auto& [shape, layer] : coloured_)
        if (shape->Contains(p)) return layer;
    return -1;
}

void MapWidget::paintEvent(QPaintEvent*) {
    QPainter g(this);
    g.setRenderHint(QPainter::Antialiasing);
    g.fillRect(rect(), QColor(0xf4, 0xf1, 0xea));
    g.fillRect(MapArea(), QColor(0xdd, 0xea, 0xf3));
    g.setClipRect(MapArea());
    g.setPen(Qt::NoPen);
    g.setBrush(QColor(0xfb, 0xfa, 0xf5));
    g.drawPath(outline_);
    const int32_t n = m_.LayerCount();
    for (int32_t i = 0; i < n; ++i) {
        g.setBrush(ZoneColour(i, n));
        g.drawPath(zones_[static_cast<size_t>(i)]);
    }
    g.setBrush(Qt::NoBrush);
    g.setPen(QPen(QColor(0x80, 0x80, 0x80), 0.4));
    g.drawPath(outline_);
    g.setClipping(false);
    const int32_t selected = m_.SelectedLayer() - 1;
    for (int32_t i = 0; i < n; ++i) {
        const QRectF r = SwatchRect(i);
        const QRectF box(r.left(), r.top() + 1, r.height() - 2, r.height() - 2);
        g.setPen(QPen(i == selected ? palette().highlight().color() : QColor(0x60, 0x60, 0x60), i == selected ? 2 : 1));
        g.setBrush(ZoneColour(i, n));
        g.drawRect(box);
        g.setPen(palette().windowText().color());
        g.drawText(r.adjusted(r.height() + 4, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   QString::fromStdString(m_.ucLayers(i).ToolTipText()));
    }
    QFont small = font();
    small.setPointSizeF(std::max(6.0, small.pointSizeF() * 0.8));
    g.setFont(small);
    g.setPen(QColor(0x50, 0x50, 0x50));
    g.drawText(QRectF(4, height() - kFooter, width() - 8, kFooter - 2), Qt::AlignRight | Qt::AlignVCenter,
               attribution_);
}

void MapWidget::Pointer(QPointF pos, Qt::MouseButtons buttons, Qt::KeyboardModifiers mods) {
    const int32_t layer = LayerAt(pos);
    const auto b = static_cast<int16_t>((buttons & Qt::LeftButton ? 1 : 0) | (buttons & Qt::RightButton ? 2 : 0));
    const auto s = static_cast<int16_t>((mods & Qt::ShiftModifier ? 1 : 0) | (mods & Qt::ControlModifier ? 2 : 0) |
                                        (mods & Qt::AltModifier ? 4 : 0));
    const auto x = static_cast<float>(PixelsToTwips(static_cast<int>(pos.x())));
    const auto y = static_cast<float>(PixelsToTwips(static_cast<int>(pos.y())));
    (layer < 0 ? m_.ucBaseLayer() : m_.ucLayers(layer)).SurfaceMouseMove(b, s, x, y);
    const QString tip = layer < 0 ? QString() : QString::fromStdString(m_.ucLayers(layer).ToolTipText());
    setToolTip(tip);
    update();
}

void MapWidget::mouseMoveEvent(QMouseEvent* e) {
    if (Detached(this)) return;
    try {
        Pointer(e->position(), e->buttons(), e->modifiers());
    } catch (const RuntimeError& err) {
        QMessageBox::critical(window(), QStringLiteral("QVRoofLoad"), QString::fromStdString(err.description()));
    }
}

void MapWidget::mouseReleaseEvent(QMouseEvent* e) {
    if (Detached(this) || e->button() != Qt::LeftButton) return;
    try {
        // A click comes with the pointer where it is, as the move before it.
        Pointer(e->position(), Qt::NoButton, e->modifiers());
        const int32_t layer = LayerAt(e->position());
        (layer < 0 ? m_.ucBaseLayer() : m_.ucLayers(layer)).SurfaceClick();
    } catch (const RuntimeError& err) {
        QMessageBox::critical(window(), QStringLiteral("QVRoofLoad"), QString::fromStdString(err.description()));
    }
}

void MapWidget::mouseDoubleClickEvent(QMouseEvent* e) {
    if (Detached(this)) return;
    try {
        const int32_t layer = LayerAt(e->position());
        (layer < 0 ? m_.ucBaseLayer() : m_.ucLayers(layer)).SurfaceDblClick();
    } catch (const RuntimeError& err) {
        QMessageBox::critical(window(), QStringLiteral("QVRoofLoad"), QString::fromStdString(err.description()));
    }
}

namespace {

// The generic dialog of the form with its map control's picture put in.
std::unique_ptr<QDialog> MakeMapDialog(FormBase& base) {
    auto& form = dynamic_cast<Form&>(base);
    auto view = std::make_unique<FormView>(form);
    for (Control* c : form.Controls()) {
        auto* map = dynamic_cast<ucImageMap*>(c);
        if (!map) continue;
        QWidget* old = view->WidgetOf(map->Key());
        if (!old || !old->parentWidget() || !old->parentWidget()->layout()) continue;
        auto* picture = new MapWidget(*map, old->parentWidget());
        delete old->parentWidget()->layout()->replaceWidget(old, picture, Qt::FindChildrenRecursively);
        delete old;
    }
    return view;
}

const bool registered = [] {
    for (const char* name : {"frmSLZ", "frmSLZ_1", "frmWZ_1", "frmWZ_2", "frmClimaEN", "frmEN_SZ_alpine",
                             "frmEN_SZ_centraleast", "frmEN_SZ_greece", "frmEN_SZ_iberian", "frmEN_SZ_mediterranean",
                             "frmEN_SZ_centralwest", "frmEN_SZ_swedenfinland", "frmEN_SZ_uk", "frmEN_SZ_norway",
                             "frmEN_SZ_iceland", "frmEN_SZ_czech", "frmEN_SZ_poland"})
        RegisterView(name, MakeMapDialog);
    return true;
}();

}  // namespace

}  // namespace qvrl::qt
