#include "validate.h"

#include "support/vb.h"

namespace qvrl::cli::validate {

CLI::Validator Between(double lo, double hi, const std::string& unit, bool lowOpen) {
    const std::string from = lowOpen ? "above " + DoubleToText(lo) + " and up to " : "between " + DoubleToText(lo) + " and ";
    const std::string range = from + DoubleToText(hi) + " " + unit;
    return CLI::Validator(
        [lo, hi, lowOpen, range](std::string& text) -> std::string {
            double v = 0.0;
            if (!CLI::detail::lexical_cast(text, v)) return {};
            // Written so that NaN fails as well.
            const bool inside = (lowOpen ? v > lo : v >= lo) && v <= hi;
            if (inside) return {};
            return "must lie " + range + ", got " + text;
        },
        range, "range");
}

// Lowest: shores below sea level (the Dead Sea lies at -430 m); highest: the
// Alpine summits (4808 m).
CLI::Validator Altitude() { return Between(-500.0, 5000.0, "m"); }
// The tallest buildings stand below 1000 m; the load standards stop far lower.
CLI::Validator BuildingHeight() { return Between(0.0, 1000.0, "m", true); }
// Fundamental values of the annexes lie below 40 m/s; 70 m/s covers storms
// of any European coast, and qb of 3.5 kN/m² corresponds to it.
CLI::Validator BasicVelocity() { return Between(0.0, 70.0, "m/s"); }
CLI::Validator BasicPressure() { return Between(0.0, 3.5, "kN/m²"); }
// No place in the United Kingdom lies 120 km from the sea, nor 50 km inside a town.
CLI::Validator DistanceToShore() { return Between(0.0, 300000.0, "m"); }
CLI::Validator DistanceInTown() { return Between(0.0, 100000.0, "m"); }

CLI::Validator Postcode() {
    return CLI::Validator(
        [](std::string& text) -> std::string {
            const size_t b = text.find_first_not_of(" \t");
            const size_t e = text.find_last_not_of(" \t");
            const std::string digits = b == std::string::npos ? std::string() : text.substr(b, e - b + 1);
            if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
                return "a postcode or its beginning is digits, such as 50667 or 506; got '" + text + "'";
            text = digits;
            return {};
        },
        "DIGITS", "postcode");
}

}  // namespace qvrl::cli::validate
