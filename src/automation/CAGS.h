#pragma once
// The public municipality object: the zones, remarks and names of a town by
// its official key (AGS). Every getter is a fresh look-up in the German town
// table, with the user's corrections laid over it; nothing is cached. An
// unknown key gives "" or 0.

#include <cstdint>
#include <string>

namespace qvrl {

class CAGS {
public:
    std::string GetTownName(const std::string& AGS) const;
    // No look-up fills the short name: always "".
    std::string GetTownNameShort(const std::string& AGS) const;
    std::string GetStateName(const std::string& AGS) const;
    std::string GetStateNameShort(const std::string& AGS) const;
    // The government region, under the name the interface has always had.
    std::string GetCountyName(const std::string& AGS) const;
    std::string GetRuralDistrictName(const std::string& AGS) const;
    std::string GetZIP(const std::string& AGS) const;
    std::string GetWZ(const std::string& AGS) const;
    std::string GetSZ(const std::string& AGS) const;
    std::string GetSRemark(const std::string& AGS) const;
    std::string GetWRemark(const std::string& AGS) const;
    // Kept for the host; no getter reads it, the German table is always used.
    int16_t Norm() const { return norm_; }
    void Norm(int16_t value) { norm_ = value; }
    // The German table has no qb or sk: 0 for every key.
    double Getqb(const std::string& AGS) const;
    double Getsk(const std::string& AGS) const;

private:
    int16_t norm_ = 50;
};

}  // namespace qvrl
