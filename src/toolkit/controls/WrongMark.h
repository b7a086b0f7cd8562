#pragma once

class QLineEdit;

/// Shows where an edit has what can't be taken.
namespace nsWrongMark {

/// Tints the edit, until its text changes.
void Set(QLineEdit* pEdit);

} // namespace nsWrongMark
