#include "parameter/ParameterLists.h"

#include <QComboBox>
#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MostItems = 10000; ///< limits and counts beyond are not believed

/// The whole list at once: a combo box takes its time over each entry that is added to it.
void Replace(QComboBox& objList, const QStringList& arTexts, const QList<int>& arData)
{
    objList.clear();
    objList.addItems(arTexts);
    for (int nItem = 0; nItem < arData.size(); ++nItem)
        objList.setItemData(nItem, arData[nItem]);
}

void FillNumbers(QComboBox& objList, const QList<int>& arNumbers)
{
    QStringList arTexts;
    for (const int nNumber : arNumbers)
        arTexts.append(QString::number(nNumber));
    Replace(objList, arTexts, arNumbers);
}

QList<int> Range(qint64 nMin, qint64 nMax)
{
    QList<int> arNumbers;
    for (qint64 n = nMin; n <= std::min(nMax, nMin + MostItems - 1); ++n)
        arNumbers.append(static_cast<int>(n));
    return arNumbers;
}

QList<int> Filtered(const QString& sNumbers, CAbilities::stDef_Limits stLimits)
{
    QList<int> arNumbers;
    for (const QString& sItem : sNumbers.split(u',').mid(0, MostItems)) {
        const int nNumber = CXmlObj::s_F_n_ToInt(sItem);
        if (!sItem.trimmed().isEmpty() && nNumber >= stLimits.nMin && nNumber <= stLimits.nMax)
            arNumbers.append(nNumber);
    }
    return arNumbers;
}

void FillNames(QComboBox& objList, const stDef_ListSource& stSource, const CAbilities& objAbilities)
{
    const int nCount = objAbilities.m_F_n_Number(QString::fromLatin1(stSource.pszCount), u"Count"_s);
    QStringList arNames;
    QList<int> arPlaces;
    for (int nName = 0; nName < std::min(nCount, MostItems); ++nName) {
        arNames.append(
            objAbilities.m_F_s_Text(QString::asprintf("%s%03d", stSource.stLimits.pszPath, nName), u"Name"_s));
        arPlaces.append(nName);
    }
    Replace(objList, arNames, arPlaces);
}

} // namespace

void nsParameterLists::Fill(QComboBox& objList, const stDef_ListSource& stSource, const CAbilities& objAbilities,
                            CAbilities::stDef_Limits stLimits)
{
    switch (stSource.nItems) {
    case emDef_Items::None:
        break;
    case emDef_Items::Range:
        FillNumbers(objList, Range(stLimits.nMin, stLimits.nMax));
        break;
    case emDef_Items::Filtered:
        FillNumbers(objList, Filtered(objAbilities.m_F_s_Text(u"/root/Support"_s, u"FPS"_s), stLimits));
        break;
    case emDef_Items::Named:
        FillNames(objList, stSource, objAbilities);
        break;
    case emDef_Items::Hundred:
        FillNumbers(objList, Range(1, 100));
        break;
    }
}

void nsParameterLists::FillOffered(QComboBox& objList, std::span<const char* const> arTexts, const QString& sOffered)
{
    objList.clear();
    for (int nText = 0; nText < static_cast<int>(arTexts.size()); ++nText) {
        if (sOffered.mid(nText, 1) == u"1")
            objList.addItem(QString::fromLatin1(arTexts[static_cast<std::size_t>(nText)]), nText);
    }
}

void nsParameterLists::Choose(QComboBox& objList, const stDef_ListSource& stSource, int nValue,
                              CAbilities::stDef_Limits stLimits)
{
    if (stSource.nItems == emDef_Items::Hundred)
        objList.setCurrentIndex(nValue >= 1 && nValue <= objList.count() ? nValue - 1 : -1);
    else if (stSource.nItems == emDef_Items::Named)
        ChooseData(objList, nValue);
    else
        ChooseData(objList, CAbilities::s_F_n_Clamp(nValue, stLimits));
}

void nsParameterLists::ChooseData(QComboBox& objList, int nData)
{
    objList.setCurrentIndex(std::max(objList.findData(nData), objList.count() > 0 ? 0 : -1));
}

int nsParameterLists::Value(const QComboBox& objList, const stDef_ListSource& stSource)
{
    return stSource.nItems == emDef_Items::Hundred ? objList.currentIndex() + 1 : Data(objList);
}

int nsParameterLists::Data(const QComboBox& objList)
{
    return objList.currentIndex() < 0 ? -1 : objList.currentData().toInt();
}
