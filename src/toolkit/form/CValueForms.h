#pragma once

#include <QString>
#include <concepts>

class CIPAddressEdit;
class CTimePicker;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;

/// How a value of a document stands in a control: for each form a get and a set, which exist for the controls that the
/// form fits alone. A form that doesn't fit its control doesn't compile. Forms of lists also tell whether the list has
/// an entry for a value: what it has none for is lost when it is stored.
namespace nsForms {

/// The text of an edit.
struct AsText
{
    static void s_S_Show(QLineEdit& objEdit, const QString& sValue);
    static QString s_F_s_Stored(const QLineEdit& objEdit);
    static void s_S_Show(CIPAddressEdit& objEdit, const QString& sValue);
    static QString s_F_s_Stored(const CIPAddressEdit& objEdit);
};

/// A check box: 0 or 1.
struct AsCheck
{
    static void s_S_Show(QCheckBox& objBox, const QString& sValue);
    static QString s_F_s_Stored(const QCheckBox& objBox);
};

/// A check box that is on while the value is 0.
struct AsUncheck
{
    static void s_S_Show(QCheckBox& objBox, const QString& sValue);
    static QString s_F_s_Stored(const QCheckBox& objBox);
};

/// The entry of a list, by its text; none is chosen where no entry has the value, and then the value is empty.
struct ByText
{
    static void s_S_Show(QComboBox& objList, const QString& sValue);
    static QString s_F_s_Stored(const QComboBox& objList);
    static bool s_F_b_Knows(const QComboBox& objList, const QString& sValue);
};

/// The entry of a list, by the number behind it; none is chosen where no entry has the value, and then it is -1.
struct ByData
{
    static void s_S_Show(QComboBox& objList, const QString& sValue);
    static QString s_F_s_Stored(const QComboBox& objList);
    static bool s_F_b_Knows(const QComboBox& objList, const QString& sValue);
};

/// The same, but the first entry is chosen where no entry has the value.
struct ByDataOrFirst : ByData
{
    static void s_S_Show(QComboBox& objList, const QString& sValue);
};

/// The radio button whose id is the value. One that no button has leaves none chosen, and stays what it is until one
/// is.
struct ByButton
{
    static void s_S_Show(QButtonGroup& objButtons, const QString& sValue);
    static QString s_F_s_Stored(const QButtonGroup& objButtons);
};

/// Seconds, 0 to 59.
struct AsSeconds
{
    static void s_S_Show(CTimePicker& objPicker, const QString& sValue);
    static QString s_F_s_Stored(const CTimePicker& objPicker);
};

/// An edit that only shows: it has no way back.
struct Shown
{
    static void s_S_Show(QLineEdit& objEdit, const QString& sValue);
};

/// A control that stands for no value of a document by itself.
struct Unbound
{};

template <class Form, class Control>
concept Knows = requires(const Control& objControl, const QString& sValue)
{
    {
        Form::s_F_b_Knows(objControl, sValue)
        } -> std::convertible_to<bool>;
};

template <class Form, class Control>
concept Shows = requires(Control& objControl, const QString& sValue)
{
    Form::s_S_Show(objControl, sValue);
};

template <class Form, class Control>
concept Stores = requires(const Control& objControl)
{
    {
        Form::s_F_s_Stored(objControl)
        } -> std::convertible_to<QString>;
};

} // namespace nsForms
