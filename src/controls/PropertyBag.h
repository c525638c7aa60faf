#pragma once
// The property bag a form keeps its controls' design settings in: values by
// name. Writing the default removes the entry, so a bag holds only what
// differs; reading an absent entry gives the default.

#include <map>
#include <string>

#include "support/vb.h"

namespace qvrl {

class PropertyBag {
public:
    void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue = {}) {
        if (value == defaultValue) entries_.erase(name);
        else entries_[name] = value;
    }
    Variant ReadProperty(const std::string& name, const Variant& defaultValue = {}) const {
        const auto it = entries_.find(name);
        return it == entries_.end() ? defaultValue : it->second;
    }
    bool Contains(const std::string& name) const { return entries_.count(name) != 0; }
    const std::map<std::string, Variant>& Entries() const { return entries_; }

private:
    std::map<std::string, Variant> entries_;
};

}  // namespace qvrl
