#pragma once

#include <memory>
#include <vector>

#include "toolkit/form/CTextSource.h"
#include "toolkit/sheet/CPropertySheet.h"

class CDocumentWatch;
class CXmlObj;

/// A sheet whose title, buttons and tabs follow the language: rows of labels and makers of pages.
class FLEETLINK_EXPORT CSettingSheet : public CPropertySheet
{
    Q_OBJECT

public:
    /// `sCaption` stands in the title until the sheet opens, and then if the language has no word for `stTitle`. The
    /// texts are borrowed and outlive the sheet. `nSelectPage` is the tab that is shown first.
    CSettingSheet(const CTextSource* pTexts, const QString& sCaption, const stDef_Text& stTitle, QWidget* pParent,
                  unsigned int nSelectPage = 0);
    ~CSettingSheet() override;

    int OnInitDialog() override;
    /// The documents that OK is to post, which are borrowed, as they were fetched. Esc and the window's close ask from
    /// now on before a change of them is lost.
    void m_S_Watch(const QList<CXmlObj*>& arDocuments);

protected:
    bool m_F_b_MayDrop() override;
    /// Whether there is something that a close without OK would lose.
    virtual bool m_F_b_Changed() const;
    /// Adds a tab behind the others; the page belongs to the sheet from now on.
    void m_S_AddTab(const stDef_Text& stLabel, CPropertyPage* pPage);

private:
    const CTextSource* vm_pTexts;
    stDef_Text vm_stTitle;
    std::unique_ptr<CDocumentWatch> vm_pWatch;
    std::vector<stDef_Text> vm_arLabels;
};
