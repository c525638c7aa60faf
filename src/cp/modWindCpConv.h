#pragma once
// The one way a selection result reaches the host: a record copied over every
// property of the public table.

#include <memory>

#include "cp/CWindCpTable.h"
#include "cp/CpWindRecord.h"

namespace qvrl {

// Writes all 71 values through the table's write accessors, in a fixed order,
// unconditionally: a 0 in the record clears what the host wrote, the request
// values included, so the caller sees which row it got. ID, Typ and Remark are
// not handed over. A failing accessor stops the conversion; values already
// written stay written.
void CpRecordToTable(const CpWindRecord& Rec, CWindCpTable& Table);
// The same on a reference that may be empty: an empty one is error 91, and
// nothing is written.
void CpRecordToTable(const CpWindRecord& Rec, const std::shared_ptr<CWindCpTable>& Table);

}  // namespace qvrl
