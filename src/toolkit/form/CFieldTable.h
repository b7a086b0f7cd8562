#pragma once

#include <QString>
#include <vector>

#include "host/Export.h"

class CXmlObj;
class QWidget;

/// How a value stands in its control.
enum class emDef_FieldForm
{
    Edit,     ///< an edit's text
    Check,    ///< a check box: 0 or 1
    PickText, ///< a list's chosen entry, by its text; none is chosen where no entry has the value
    PickData, ///< a list's chosen entry, by its item data; -1 for none
    Shown     ///< an edit that only shows; never written back
};

/// One value of a page: where it lies in a document, and the control that is its working copy.
struct stDef_FieldRow
{
    QString sPath;
    QString sKey;
    QWidget* pControl;
    emDef_FieldForm nForm = emDef_FieldForm::Edit;
    QString sDefault = {}; ///< of a value that isn't there; numbers are 0 then
};

/// The values of a page that copies its controls into a document when it is applied. Loading and storing walk the same
/// rows in the same order.
class FLEETLINK_EXPORT CFieldTable
{
public:
    void m_S_Add(const stDef_FieldRow& stRow) { vm_arRows.push_back(stRow); }
    void m_S_Load(const CXmlObj& xmlDocument) const;
    /// Writes every row but those that only show, those of disabled controls, too.
    void m_S_Store(CXmlObj& xmlDocument) const;

private:
    std::vector<stDef_FieldRow> vm_arRows;
};
