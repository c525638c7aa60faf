#include "maps/ucLayer.h"

#include "support/errors.h"

namespace qvrl {

void ucLayer::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty("BackStyle", Variant(backStyle_), Variant(DefaultBackStyle));
    bag.WriteProperty("MaskColor", Variant(static_cast<int32_t>(maskColor_)),
                      Variant(static_cast<int32_t>(DefaultMaskColor)));
    bag.WriteProperty("MaskPicture", Variant(maskPicture_), Variant(std::string()));
    bag.WriteProperty("Picture", Variant(picture_), Variant(std::string()));
    bag.WriteProperty("BorderStyle", Variant(borderStyle_), Variant(DefaultBorderStyle));
    bag.WriteProperty("MyValue", myValue_, Variant(int16_t{0}));
}

void ucLayer::ReadProperties(const PropertyBag& bag) {
    backStyle_ = CInt(bag.ReadProperty("BackStyle", Variant(DefaultBackStyle)));
    maskColor_ = static_cast<uint32_t>(
        CLng(bag.ReadProperty("MaskColor", Variant(static_cast<int32_t>(DefaultMaskColor)))));
    maskPicture_ = bag.ReadProperty("MaskPicture", Variant(std::string())).toString();
    picture_ = bag.ReadProperty("Picture", Variant(std::string())).toString();
    borderStyle_ = CInt(bag.ReadProperty("BorderStyle", Variant(DefaultBorderStyle)));
    myValue_ = bag.ReadProperty("MyValue", Variant(int16_t{0}));
}

ucImageMap::ucImageMap(std::string name, int16_t index, std::string controlName, std::function<CodeList()> list,
                       MapPicture picture)
    : Image(std::move(name), index),
      controlName_(std::move(controlName)),
      list_(std::move(list)),
      picture_(picture) {
    // One layer per zone of the list: the control array and the list agree.
    const int32_t count = list_ ? list_().Count() : 0;
    for (int32_t i = 0; i < count; ++i) {
        layers_.push_back(std::make_unique<ucLayer>());
        Wire(*layers_.back(), i);
    }
    // The base layer tells where the pointer is but keeps the zone last touched.
    base_.MouseMove = [this](int16_t b, int16_t s, float x, float y) { MouseMove(b, s, x, y, selectedLayer_, std::string()); };
    base_.Click = [this] { Click(); };
    base_.DblClick = [this] { DblClick(); };
    LayerMove = [this](int32_t layer) {
        (layer == 0 ? base_ : ucLayers(layer - 1)).SurfaceMouseMove(0, 0, 0.0f, 0.0f);
    };
    LayerClick = [this](int32_t layer) { (layer == 0 ? base_ : ucLayers(layer - 1)).SurfaceClick(); };
}

void ucImageMap::Wire(ucLayer& layer, int32_t index) {
    layer.MouseMove = [this, &layer, index](int16_t b, int16_t s, float x, float y) {
        selectedLayer_ = static_cast<int16_t>(index + 1);
        selectedValue_ = CInt(layer.MyValue());
        MouseMove(b, s, x, y, selectedLayer_, layer.ToolTipText());
    };
    layer.Click = [this] { Click(); };
    layer.DblClick = [this] { DblClick(); };
}

ucLayer& ucImageMap::ucLayers(int32_t index) {
    if (index < 0 || index >= LayerCount())
        Raise(err::SubscriptOutOfRange, controlName_, "no layer " + std::to_string(index) + " in " + controlName_);
    return *layers_[static_cast<size_t>(index)];
}

const ucLayer& ucImageMap::ucLayers(int32_t index) const { return const_cast<ucImageMap*>(this)->ucLayers(index); }

void ucImageMap::InitMe() {
    const CodeList l = list_ ? list_() : CodeList();
    for (int32_t i = 1; i <= LayerCount(); ++i) {
        if (i > l.Count())
            Raise(err::SubscriptOutOfRange, controlName_, controlName_ + ": the list has fewer zones than layers");
        ucLayer& layer = ucLayers(i - 1);
        layer.ToolTipText(l.sName[static_cast<size_t>(i)]);
        layer.MyValue(Variant(l.Index[static_cast<size_t>(i)]));
    }
    Notify();
}

void ucImageMap::Resize() {
    const int32_t w = base_.Width, h = base_.Height;
    base_.Move(0, 0, w, h);
    for (auto& layer : layers_) {
        layer->Move(0, 0, w, h);
        layer->MaskColor(0);
    }
}

int32_t ucImageMap::LayerOfCode(int16_t code) const {
    for (int32_t i = 0; i < LayerCount(); ++i)
        if (layers_[static_cast<size_t>(i)]->MyValue().type() != Variant::Type::Empty &&
            CInt(layers_[static_cast<size_t>(i)]->MyValue()) == code)
            return i;
    return -1;
}

}  // namespace qvrl
