#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <functional>
#include <span>
#include <vector>

#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CNumberedNodes.h"

class CItemList;

/// A list of numbered nodes over the form of the chosen one, with Add, Delete and Modify, which write into the document
/// at once. A column is a value of the entry's node, with an edit of its own in the form.
class CEntryTable : public QObject
{
    Q_OBJECT

public:
    struct stDef_Column
    {
        const char* pszKey; ///< of the value, and the name of its edit
        stDef_Text stTitle;
    };
    /// What the list is of.
    struct stDef_Entries
    {
        stDef_Node stParent; ///< the node with the `count`
        const char* pszStem; ///< of the entries' names
        stDef_Text stTitle;  ///< by which the list is read out
        std::span<const stDef_Column> arColumns;
        int nColumnWidth; ///< pixels at 96 dpi
    };
    enum class emDef_Action
    {
        Add,
        Modify
    };
    /// Whether the form can't be taken; `nOwnRow` is the row that is being changed, -1 for a new one.
    using Check = std::function<bool(int nOwnRow)>;

    /// Makes list, edits and buttons as rows of the group.
    CEntryTable(CFormGroup objGroup, const stDef_Entries& stEntries, QObject* pParent);

    /// The checks of an action run in the order in which they were added. The first one that holds ends the action with
    /// `S_Refused`: the same row stays selected, and what was typed stays in the form.
    void m_S_Refuse(emDef_Action nAction, const stDef_Text& stReason, Check fnCheck);
    QString m_F_s_Edited(int nColumn) const { return vm_arEdits[nColumn]->text(); }
    /// Whether another row than this one has in a column exactly what the form has there.
    bool m_F_b_IsTaken(int nColumn, int nOwnRow) const;

    /// Fills the list from the document and chooses its first row.
    void m_S_Open();

Q_SIGNALS:
    void S_Refused(const stDef_Text& stReason);

private:
    void m_S_MakeButtons(CFormGroup& objGroup);
    void m_S_Fill();
    void m_S_ShowRow(int nRow);
    void m_S_Add();
    void m_S_Modify();
    void m_S_Delete();
    bool m_F_b_Refused(emDef_Action nAction, int nOwnRow);
    QStringList m_F_ar_Edited() const;
    QStringList m_F_ar_Stored(int nEntry) const;

    struct stDef_Check
    {
        emDef_Action nAction;
        stDef_Text stReason;
        Check fnCheck;
    };

    CXmlObj* vm_pDocument;
    CNumberedNodes vm_objEntries;
    CValueRows vm_objRows; ///< of the chosen entry
    CItemList* vm_pList;
    QStringList vm_arKeys; ///< of the columns
    QList<QLineEdit*> vm_arEdits;
    QList<QPushButton*> vm_arForChosen; ///< Delete and Modify
    std::vector<stDef_Check> vm_arChecks;
};
