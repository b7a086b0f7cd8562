#pragma once

#include <functional>
#include <vector>

#include "host/Lib_Bedrock.h"
#include "toolkit/form/CValueForms.h"

/// Controls that show the members of a structure, each in the form in which its value stands there. Showing and taking
/// walk the same rows.
template <class Structure>
class CMemberForm
{
public:
    using Pointer = nsMembers::Pointer<Structure>;

    /// Gives the control back, so that one line makes and binds it. The control is borrowed.
    template <class Form, class Control>
    requires nsForms::Shows<Form, Control> && nsForms::Stores<Form, Control> Control* m_F_p_Bind(Pointer pMember,
                                                                                                 Control* pControl)
    {
        vm_arRows.push_back({pMember, [pControl](const QString& sValue) { Form::s_S_Show(*pControl, sValue); },
                             [pControl] { return Form::s_F_s_Stored(*pControl); }});
        return pControl;
    }

    void m_S_Show(const Structure& st) const
    {
        for (const stDef_Row& stRow : vm_arRows)
            stRow.fnShow(nsMembers::Text(st, stRow.pMember));
    }
    /// Puts what the controls have into the structure; members without a control stay.
    void m_S_Take(Structure& st) const
    {
        for (const stDef_Row& stRow : vm_arRows)
            nsMembers::SetText(st, stRow.pMember, stRow.fnStored());
    }
    Structure m_F_o_Taken() const
    {
        Structure st;
        m_S_Take(st);
        return st;
    }

private:
    struct stDef_Row
    {
        Pointer pMember;
        std::function<void(const QString&)> fnShow;
        std::function<QString()> fnStored;
    };

    std::vector<stDef_Row> vm_arRows;
};
