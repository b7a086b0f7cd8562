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
/// at once. A column is a value of the entry's node.
class CEntryTable : public QObject
{
    Q_OBJECT

public:
    struct stDef_Column
    {
        const char* pszKey; ///< of the value, and the name of its edit
        stDef_Text stTitle;
        QString (*fnShown)(const QString& sStored) = nullptr; ///< how the list shows a value; null: as it is stored
    };
    /// What the list is of.
    struct stDef_Entries
    {
        stDef_Node stParent; ///< the node with the `count`
        const char* pszStem; ///< of the entries' names
        stDef_Text stTitle;  ///< by which the list is read out
        std::span<const stDef_Column> arColumns;
        int nColumnWidth;        ///< pixels at 96 dpi
        int nCountIfMissing = 0; ///< entries where the document doesn't count them
        bool bNewRow = false;    ///< whether an empty row stands behind the entries, for a new one
    };
    enum class emDef_Row
    {
        None, ///< no row, or no document
        New,
        Entry
    };
    /// What is chosen in the list.
    struct stDef_Chosen
    {
        emDef_Row nRow;
        int nEntry; ///< for a new one the number that it will have
    };
    struct stDef_Buttons
    {
        QPushButton *pAdd, *pDelete, *pModify;
    };
    enum class emDef_Action
    {
        Add,
        Modify
    };
    /// Whether the form can't be taken; `nOwnRow` is the row that is being changed, -1 for a new one.
    using Check = std::function<bool(int nOwnRow)>;

    /// Makes list, an edit for each column, and buttons as rows of the group.
    CEntryTable(CFormGroup objGroup, const stDef_Entries& stEntries, QObject* pParent);
    /// Makes the list alone. The page puts it in place, and has a form of its own for the rows.
    CEntryTable(CForm& objForm, const stDef_Entries& stEntries, QObject* pParent);
    CItemList* m_F_p_List() const { return vm_pList; }
    CValueRows& m_F_o_Rows() { return vm_objRows; } ///< of the chosen entry
    /// The buttons of a page with a form of its own; Enter in the form presses Modify, or Add where that is disabled.
    void m_S_SetButtons(CForm& objForm, const stDef_Buttons& stButtons);

    /// The checks of an action run in the order in which they were added. The first one that holds ends the action with
    /// `S_Refused`: the same row stays selected, what was typed stays in the form, and the field at fault, if one is
    /// named, gets the focus.
    void m_S_Refuse(emDef_Action nAction, const stDef_Text& stReason, Check fnCheck, QLineEdit* pField = nullptr);
    QString m_F_s_Edited(int nColumn) const { return vm_arEdits[nColumn]->text(); }
    /// Whether another row than this one has exactly this text in a column.
    bool m_F_b_IsTaken(int nColumn, const QString& sText, int nOwnRow) const;

    /// Fills the list from the document and chooses its first row.
    void m_S_Open();
    stDef_Chosen m_F_o_Chosen() const;

Q_SIGNALS:
    /// The rows show what is chosen, and Delete and Modify are enabled for an entry: the page's turn for the rest.
    void S_Shown(const CEntryTable::stDef_Chosen& stChosen);
    /// The rows of an entry were written: the page's turn for what they don't hold. A new one isn't counted yet.
    void S_Stored(int nEntry, bool bNew);
    void S_Refused(const stDef_Text& stReason);

private:
    void m_S_Fill();
    void m_S_ShowRow();
    void m_S_Add();
    void m_S_Modify();
    void m_S_Delete();
    bool m_F_b_CanAct();
    bool m_F_b_Refused(emDef_Action nAction, int nOwnRow);
    void m_S_Store(int nEntry, bool bNew);
    QStringList m_F_ar_Shown(int nEntry) const;

    struct stDef_Check
    {
        emDef_Action nAction;
        stDef_Text stReason;
        Check fnCheck;
        QLineEdit* pField;
    };

    CXmlObj* vm_pDocument;
    CNumberedNodes vm_objEntries;
    bool vm_bNewRow;
    CValueRows vm_objRows;
    CItemList* vm_pList;
    std::vector<stDef_Column> vm_arColumns;
    QList<QLineEdit*> vm_arEdits;       ///< of a form that the table made
    QList<QPushButton*> vm_arForChosen; ///< Delete and Modify
    std::vector<stDef_Check> vm_arChecks;
};
