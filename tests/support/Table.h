#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

/// A row of a table that stands in a file.
struct stDef_TableRow
{
    std::string sWhere; ///< file and line
    std::vector<std::string> arFields;

    const std::string& operator[](std::size_t nField) const { return arFields.at(nField); }
    int Number(std::size_t nField) const { return std::stoi(arFields.at(nField)); }
    bool Is(std::size_t nField) const { return arFields.at(nField) == "yes"; }
};

/// A field with its escapes: \n, \r, \t, \0, \xNN for a byte, \s for a blank at its edge; before any other sign the
/// stroke goes.
inline std::string FieldText(std::string_view sRaw)
{
    constexpr std::string_view Letters = "nrt0s", Meanings("\n\r\t\0 ", 5);
    std::string sText;
    for (std::size_t n = 0; n < sRaw.size(); ++n) {
        const bool bEscape = sRaw[n] == '\\' && n + 1 < sRaw.size();
        const std::size_t nLetter = bEscape ? Letters.find(sRaw[++n]) : Letters.npos;
        const bool bByte = bEscape && sRaw[n] == 'x';
        if (bByte)
            sText += static_cast<char>(std::stoi(std::string(sRaw.substr((n += 2) - 1, 2)), nullptr, 16));
        else
            sText += nLetter == Letters.npos ? sRaw[n] : Meanings[nLetter];
    }
    return sText;
}

/// Rows of a file of the folder's fixtures: fields between bars, without the blanks at their edges. Fields at the end
/// of a row may be left out, as empty ones; "#" begins a remark.
inline std::vector<stDef_TableRow> ReadTable(const std::string& sName, std::size_t nFields)
{
    std::vector<stDef_TableRow> arRows;
    std::ifstream file(FIXTURE_FOLDER "/" + sName);
    int nLine = 0;
    for (std::string sLine; std::getline(file, sLine);) {
        ++nLine;
        if (sLine.empty() || sLine.starts_with('#'))
            continue;
        stDef_TableRow& stRow = arRows.emplace_back(stDef_TableRow{sName + ':' + std::to_string(nLine), {}});
        for (std::size_t nBegin = 0, nEnd = 0; nEnd < sLine.size(); nBegin = ++nEnd) {
            while (nEnd < sLine.size() && sLine[nEnd] != '|')
                nEnd += sLine[nEnd] == '\\' ? 2 : 1;
            std::string_view sField = std::string_view(sLine).substr(nBegin, nEnd - nBegin);
            sField.remove_prefix(std::min(sField.find_first_not_of(' '), sField.size()));
            sField = sField.substr(0, sField.find_last_not_of(' ') + 1);
            stRow.arFields.push_back(FieldText(sField));
        }
        EXPECT_LE(stRow.arFields.size(), nFields) << stRow.sWhere;
        stRow.arFields.resize(nFields);
    }
    EXPECT_FALSE(arRows.empty()) << sName;
    return arRows;
}
