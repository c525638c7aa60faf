#pragma once
// The layered image map: a base layer with the whole picture and one layer
// per zone, all stacked on the same spot. Only a layer's region answers to
// the mouse, so the layer that raises an event names the zone under it.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/Control.h"
#include "controls/PropertyBag.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl {

// One layer: a picture, transparent outside its mask.
class ucLayer {
public:
    static constexpr int16_t DefaultBackStyle = 1;
    static constexpr uint32_t DefaultMaskColor = colour::ButtonFace;
    static constexpr int16_t DefaultBorderStyle = 0;

    int16_t BackStyle() const { return backStyle_; }
    void BackStyle(int16_t v) { Change(backStyle_, v, "BackStyle"); }
    uint32_t MaskColor() const { return maskColor_; }
    void MaskColor(uint32_t v) { Change(maskColor_, v, "MaskColor"); }
    const std::string& MaskPicture() const { return maskPicture_; }
    void MaskPicture(const std::string& v) { Change(maskPicture_, v, "MaskPicture"); }
    const std::string& Picture() const { return picture_; }
    void Picture(const std::string& v) { Change(picture_, v, "Picture"); }
    int16_t BorderStyle() const { return borderStyle_; }
    void BorderStyle(int16_t v) { Change(borderStyle_, v, "BorderStyle"); }
    const Variant& MyValue() const { return myValue_; }
    void MyValue(const Variant& v) { Change(myValue_, v, "MyValue"); }
    const std::string& ToolTipText() const { return toolTip_; }
    void ToolTipText(const std::string& v) { toolTip_ = v; }

    // Where the layer lies in its control, in twips.
    int32_t Left = 0, Top = 0, Width = 0, Height = 0;
    void Move(int32_t left, int32_t top, int32_t width, int32_t height) {
        Left = left;
        Top = top;
        Width = width;
        Height = height;
    }

    void Localize() {}

    // The holder learns of every property written, by its stored name.
    std::function<void(const std::string&)> PropertyChanged;

    void WriteProperties(PropertyBag& bag) const;
    void ReadProperties(const PropertyBag& bag);

    // The surface under the layer reports the pointer inside the region.
    void SurfaceMouseMove(int16_t button, int16_t shift, float x, float y) { MouseMove(button, shift, x, y); }
    void SurfaceClick() { Click(); }
    void SurfaceDblClick() { DblClick(); }

    Event<int16_t, int16_t, float, float> MouseMove;
    Event<> Click;
    Event<> DblClick;

private:
    template <class T>
    void Change(T& field, const T& v, const char* name) {
        field = v;
        if (PropertyChanged) PropertyChanged(name);
    }
    int16_t backStyle_ = DefaultBackStyle;
    uint32_t maskColor_ = DefaultMaskColor;
    std::string maskPicture_;
    std::string picture_;
    int16_t borderStyle_ = DefaultBorderStyle;
    Variant myValue_ = Variant(int16_t{0});
    std::string toolTip_;
};

// Where a map's picture comes from: the outline it draws and whether the
// town table colours its municipalities by zone.
struct MapPicture {
    enum class Base { Germany, Europe };
    enum class TownZone { None, Snow, Wind };
    Base base = Base::Europe;
    TownZone townZone = TownZone::None;
    // Visible window in degrees (west, south, east, north).
    double west = -25.0, south = 34.0, east = 35.0, north = 72.0;
};

// The stacked control. A model of the session driver's "map" steps too:
// layer 0 is the base, layer i the zone layer of index i - 1.
class ucImageMap : public Image {
public:
    ucImageMap(std::string name, int16_t index, std::string controlName, std::function<CodeList()> list,
               MapPicture picture);

    const std::string& ControlName() const { return controlName_; }
    const MapPicture& PictureSource() const { return picture_; }

    ucLayer& ucBaseLayer() { return base_; }
    const ucLayer& ucBaseLayer() const { return base_; }
    // Index from 0; outside is error 9.
    ucLayer& ucLayers(int32_t index);
    const ucLayer& ucLayers(int32_t index) const;
    int32_t LayerCount() const { return static_cast<int32_t>(layers_.size()); }

    int16_t SelectedLayer() const { return selectedLayer_; }
    Variant SelectedValue() const { return Variant(selectedValue_); }

    // Names and codes of the list to the layers. A list shorter than the
    // layers is error 9.
    void InitMe();
    void Localize() {}
    // Lays every zone layer on the base layer, the size of its picture.
    void Resize();

    // The zone layer of that code (-1: none): the town table's zones find
    // their layer by code, never by position.
    int32_t LayerOfCode(int16_t code) const;

    Event<int16_t, int16_t, float, float, int16_t, const std::string&> MouseMove;

private:
    void Wire(ucLayer& layer, int32_t index);
    std::string controlName_;
    std::function<CodeList()> list_;
    MapPicture picture_;
    ucLayer base_;
    std::vector<std::unique_ptr<ucLayer>> layers_;
    int16_t selectedLayer_ = 0;
    int16_t selectedValue_ = 0;
};

}  // namespace qvrl
