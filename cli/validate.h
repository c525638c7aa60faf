#pragma once
// Checks of option values that several subcommands share. The product's own
// commands refuse values that no site has and say what they accept; the
// members of the component keep taking whatever a host passes.

#include <CLI/CLI.hpp>
#include <string>

namespace qvrl::cli::validate {

// A number from lo to hi (above lo when lowOpen), in unit. A value that is no
// number is left to the option's own conversion, which names it.
CLI::Validator Between(double lo, double hi, const std::string& unit, bool lowOpen = false);

// The quantities of a site, in the ranges an engineer meets in Europe with
// room to spare.
CLI::Validator Altitude();          // m above sea level
CLI::Validator BuildingHeight();    // m
CLI::Validator BasicVelocity();     // m/s
CLI::Validator BasicPressure();     // kN/m²
CLI::Validator DistanceToShore();   // m
CLI::Validator DistanceInTown();    // m

// A postcode filter: digits, with blanks around dropped (the value becomes
// the digits alone). Use with transform().
CLI::Validator Postcode();

}  // namespace qvrl::cli::validate
