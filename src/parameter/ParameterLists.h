#pragma once

#include "drivers/CAbilities.h"
#include "parameter/stDef_ParameterBrand.h"

class QComboBox;

/// The lists of a parameter page: what they offer, what is chosen in them, and what of it is saved.
namespace nsParameterLists {

/// Replaces what the list offers. The limits are those of the source.
void Fill(QComboBox& objList, const stDef_ListSource& stSource, const CAbilities& objAbilities,
          CAbilities::stDef_Limits stLimits);
/// A list of the fixed texts whose digit in `sOffered` is 1, with their places behind them.
void FillOffered(QComboBox& objList, std::span<const char* const> arTexts, const QString& sOffered);

/// Chooses a value of the camera's node; numbers are brought within the limits first.
void Choose(QComboBox& objList, const stDef_ListSource& stSource, int nValue, CAbilities::stDef_Limits stLimits);
/// Chooses the first entry with this number behind it, or the first of all.
void ChooseData(QComboBox& objList, int nData);

/// The value that is saved; without a choice -1, or 0 in a list of a hundred.
int Value(const QComboBox& objList, const stDef_ListSource& stSource);
int Data(const QComboBox& objList);

} // namespace nsParameterLists
