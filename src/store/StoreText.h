#pragma once
// How the table store compares and matches text: case-blind as the Jet
// engine's general sort order, and Jet's LIKE patterns. The build tool of the
// shipped databases registers the same rules, so an index built there sorts
// exactly as the library compares.

#include <string_view>

struct sqlite3;

namespace qvrl {

// Marks the files the store creates ("QVRL" as SQLite's application id);
// files without the mark open as well.
inline constexpr int kStoreApplicationId = 0x5156524C;

// Name of the collation that every text comparison of the store uses.
inline constexpr const char* kStoreCollation = "QVRL_TEXT";
// Name of the SQL function behind LIKE: qvrl_like(value, pattern).
inline constexpr const char* kStoreLikeFunction = "qvrl_like";

// Order of two texts: first by letters with case and accents set aside
// (Ä sorts with A, ß as SS), then case-blind with accents. 0 only when the
// two are equal apart from case; so "Müller" = "MÜLLER" but "Muller" < "Müller".
int CompareText(std::string_view a, std::string_view b);

// Jet's LIKE, case-blind: "*" any run of characters, "?" one character,
// "#" one digit, "[abc]", "[a-z]", "[!abc]" one character of (not of) a list.
// "[" without a closing "]" stands for itself; "[]" matches no character.
bool LikeMatch(std::string_view value, std::string_view pattern);

// Registers the collation and the LIKE function on a connection; returns an
// SQLite result code.
int RegisterStoreText(sqlite3* db);

}  // namespace qvrl
