#pragma once

class QWidget;

/// Letters that lead to the controls of a window with Alt. They are chosen once the texts stand, so that they follow
/// the language; texts of languages without Latin letters have none.
class CMnemonics
{
public:
    /// Gives each button, check box and label of a control a letter of its own text that no other one has: that of a
    /// word's beginning if it is free. Texts that have one keep it, and those that find none go without.
    static void s_S_Assign(QWidget* pWindow);
};
