#pragma once

#include <memory>
#include <vector>

#include "setup/camera/stDef_SearchIPC.h"
#include "toolkit/controls/CItemList.h"

class CTextTable;

/// The cameras that a search found, one a row. A click on a column's head sorts them, always upwards.
class CCameraSearchList : public CItemList
{
    Q_OBJECT

public:
    using Rows = std::vector<std::unique_ptr<stDef_SearchIPC>>;

    explicit CCameraSearchList(QWidget* pParent = nullptr);

    void m_S_AddTexts(CTextTable& objTexts);
    /// Shows the rows in their order; they are borrowed until the next call. `fnVendor` gives a vendor's name.
    void m_S_Show(const Rows& arRows, const std::function<QString(const stDef_SearchIPC&)>& fnVendor);

Q_SIGNALS:
    void S_RowChosen(const stDef_SearchIPC* pRow); ///< clicked, or reached by a key; null for none

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;

private:
    void m_S_Fill();
    void m_S_Sort(int nColumn);
    void m_S_Choose(int nRow);

    struct stDef_Shown
    {
        const stDef_SearchIPC* pRow;
        QString sVendor;
    };
    std::vector<stDef_Shown> vm_arShown; ///< in the order of the rows
};
