#pragma once
// The one machine setting the component reads, and path splitting. Where the
// original read the registry, a settings file in the per-user folder answers:
// "registry.ini", sections named by root and key ("[HKCU\SOFTWARE\...]"),
// lines "Name=Value". Nothing is ever written.

#include <cstdint>
#include <string>

#include "support/vb.h"

namespace qvrl {

inline constexpr int32_t kRegUnknownRoot = 99;
inline constexpr int32_t kRegNotFound = 2;      // key or value missing
inline constexpr int32_t kRegInvalidData = 13;  // value of the wrong type

// The settings file consulted.
std::string RegistryFile();

// Status 0 when read, else an error number, 99 for an unknown root. Out holds
// Default unless a value was read. Type codes: "S" text, "B" boolean,
// "D" 32-bit number; any other reads nothing.
int32_t RegReadValue(const std::string& Root, const std::string& Key, const std::string& ValueName,
                     const std::string& TypeCode, const Variant& Default, Variant& Out);

// Splits a path into folder (with its closing separator), name and extension;
// both "\" and "/" separate. Always returns true.
bool SplitPath(const std::string& Path, std::string& Dir, std::string& Name, std::string& Ext);

}  // namespace qvrl
