#include "toolkit/controls/CCheckGrid.h"

#include <QCheckBox>
#include <QGridLayout>

namespace {

constexpr const char* PositionProperty = "id";

int PositionOf(const QCheckBox* pBox)
{
    return pBox->property(PositionProperty).toInt();
}

} // namespace

CCheckGrid::CCheckGrid(int nColumns, QWidget* pParent)
    : QWidget(pParent), vm_pGrid(new QGridLayout(this)), vm_nColumns(nColumns)
{
    vm_pGrid->setContentsMargins({});
}

QCheckBox* CCheckGrid::m_F_p_Add(int nPosition)
{
    auto* const pBox = new QCheckBox(this);
    pBox->setProperty(PositionProperty, nPosition);
    const auto nPlace = static_cast<int>(vm_arBoxes.size());
    vm_pGrid->addWidget(pBox, nPlace / vm_nColumns, nPlace % vm_nColumns);
    vm_arBoxes.append(pBox);
    return pBox;
}

void CCheckGrid::m_S_Show(const QString& sText)
{
    for (QCheckBox* const pBox : vm_arBoxes)
        pBox->setChecked(PositionOf(pBox) < sText.size() && sText[PositionOf(pBox)] == u'1');
}

void CCheckGrid::m_S_CheckBelow(int nLength)
{
    for (QCheckBox* const pBox : vm_arBoxes) {
        if (PositionOf(pBox) < nLength)
            pBox->setChecked(true);
    }
}

void CCheckGrid::m_S_EnableBelow(int nLength)
{
    for (QCheckBox* const pBox : vm_arBoxes)
        pBox->setEnabled(PositionOf(pBox) < nLength);
}

CCheckGrid::Marks CCheckGrid::m_F_o_Marks() const
{
    Marks mapMarks;
    for (const QCheckBox* const pBox : vm_arBoxes)
        mapMarks[PositionOf(pBox)] = pBox->isChecked();
    return mapMarks;
}
