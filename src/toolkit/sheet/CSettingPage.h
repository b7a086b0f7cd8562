#pragma once

#include "toolkit/form/CForm.h"
#include "toolkit/sheet/CPropertyPage.h"

class QLabel;

/// A page of values. What it is made of it says in `m_S_Make`, by groups and rows; loading, rules, texts, mnemonics and
/// alignment follow by themselves. What a page decides beyond that is its code.
class CSettingPage : public CPropertyPage
{
    Q_OBJECT

public:
    /// The texts are borrowed and outlive the page.
    explicit CSettingPage(const CTextSource* pTexts);

    /// Makes, loads, runs the rules, sets the texts and aligns, in this order. Returns 1.
    int OnInitDialog() final;
    /// Presses the button that the form has for it.
    void OnEnter() override;
    void m_S_StoreInto(const CValueRows::Substitute& fnSubstitute) const override;

protected:
    /// Makes the groups, their rows and what connects them.
    virtual void m_S_Make(CForm& objForm) = 0;
    /// Fills what no row tells. Runs once the rows are loaded, and not where a document that they read is closed.
    virtual void m_S_Loaded() {}
    /// Runs last: every control stands, is filled and has its text.
    virtual void m_S_Opened() {}

    /// Whether the rows could be loaded.
    bool m_F_b_Filled() const { return vm_bFilled; }
    /// Writes the rows. False and no effect if a document that would be written is closed. A page that could not be
    /// filled writes nothing, or it would replace by empty values what it never saw.
    bool m_F_b_Store() const;

    CForm& m_F_o_Form() { return vm_objForm; }
    /// The text for a message: empty while no language file is open.
    QString m_F_s_Text(const stDef_Text& stText) const { return vm_pTexts->m_F_s_Text(stText); }
    void m_S_Message(const stDef_Text& stText, const stDef_Text& stCaption);
    /// What a button says that recorders have no request for. It is not translated.
    void m_S_TellNoCgi();

    /// Shows a quiet note at the page's foot, where no message tells what came of an action. It goes with the next
    /// button or list of choices that is used; what else counts as an action the page connects to `m_S_ClearNote`.
    /// Empty: none.
    void m_S_Tell(const QString& sNote);
    void m_S_ClearNote() { m_S_Tell({}); }
    /// A line for a note, in English where the language has none; "%1" in it becomes the value.
    QString m_F_s_Line(const stDef_Text& stText, const QString& sValue = {}) const;

private:
    void m_S_PlaceNote();
    void m_S_TellUnknown();

    const CTextSource* vm_pTexts;
    CForm vm_objForm;
    bool vm_bFilled = false;
    QLabel* vm_pNote = nullptr;
};
