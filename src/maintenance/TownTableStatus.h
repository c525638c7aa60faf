#pragma once
// Whether the town look-ups have anything to find: tells an empty town table,
// or a database that cannot be opened, apart from a filter that matches nothing.

namespace qvrl {

enum class TownTableStatus { CannotOpen, Empty, Filled };

// slzwlz1 (the Eurocode table) when eurocode, else slzwlz, of the qvrl.mdb
// the look-ups open.
TownTableStatus TownTableStatusOf(bool eurocode);

}  // namespace qvrl
