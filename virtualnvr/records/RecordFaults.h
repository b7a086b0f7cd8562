#pragma once

#include "http/CFaultTable.h"

#include <string>
#include <string_view>
#include <vector>

/// What goes wrong in the record transfer service: its replies arrive whole, as HTTP has it, and lie. A CFaultTable of
/// these kinds says which of them are due.
namespace nsRecordFaults {

const std::vector<stDef_FaultKind>& Kinds();

/// Plays all that is due on a reply, each counted.
/// @param sTarget of the request, as it came
/// @param sReply "info", "index", "dat" or "img": what the body is
/// @return true if one of them brought in names that no recorder has
bool Play(CFaultTable& objFaults, const std::string& sTarget, std::string_view sReply, bool bPC, std::string& sBody);

} // namespace nsRecordFaults
