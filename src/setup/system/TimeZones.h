#pragma once

#include "toolkit/form/CFormGroup.h"

/// The time zones of recorders. They have no offsets here: the recorder alone knows what a number stands for.
namespace nsTimeZones {

/// All of them, with their numbers behind them. They are not translated.
QList<stDef_ListItem> Items();

} // namespace nsTimeZones
