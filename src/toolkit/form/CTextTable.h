#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "toolkit/form/CTextSource.h"

/// How a text stands on its widget.
enum class emDef_TextForm
{
    Plain,
    Colon ///< " : " behind it, as labels of fields have it
};

/// The texts of a window: one row a text. A row shows its default at once; `m_S_Apply` puts the words of a language in
/// its place and leaves what stands there if none come back.
class CTextTable
{
public:
    using Setter = std::function<void(const QString&)>;

    void m_S_Add(const stDef_Text& stText, Setter fnSet, emDef_TextForm nForm = emDef_TextForm::Plain);
    /// Labels, buttons, check boxes: whatever has `setText`.
    template <class Widget>
    void m_S_AddText(Widget* pWidget, const stDef_Text& stText, emDef_TextForm nForm = emDef_TextForm::Plain)
    {
        m_S_Add(
            stText, [pWidget](const QString& sText) { pWidget->setText(sText); }, nForm);
    }
    /// A text with the word of the table in it, as "(64 %1)".
    template <class Widget>
    void m_S_AddComposed(Widget* pWidget, const char* pszFormat, const stDef_Text& stWord)
    {
        m_S_Add(stWord, [pWidget, sFormat = QString::fromUtf8(pszFormat)](const QString& sWord) {
            pWidget->setText(sFormat.arg(sWord));
        });
    }

    void m_S_Apply(const CTextSource& objSource) const;

private:
    struct stDef_Row
    {
        stDef_Text stText;
        Setter fnSet;
        emDef_TextForm nForm;
    };

    static void s_S_Show(const stDef_Row& stRow, const QString& sText);

    std::vector<stDef_Row> vm_arRows;
};
