#include "records/RecordForms.h"

std::uint16_t nsRecordForms::Checksum(std::string_view sBytes)
{
    constexpr unsigned nPolynomial = 0x1021, nTop = 0x8000;
    unsigned nSum = 0xffff;
    for (const char c : sBytes) {
        nSum ^= static_cast<unsigned>(static_cast<unsigned char>(c)) << 8;
        for (int nBit = 0; nBit < 8; ++nBit)
            nSum = (nSum << 1) ^ ((nSum & nTop) != 0 ? nPolynomial : 0U);
    }
    return static_cast<std::uint16_t>(nSum & 0xffff);
}

void nsRecordForms::Append(std::string& sBytes, std::uint64_t nValue, int nWidth)
{
    for (int n = 0; n < nWidth; ++n)
        sBytes += static_cast<char>((nValue >> (8 * n)) & 0xff);
}

void nsRecordForms::AppendName(std::string& sBytes, std::string_view sName, std::size_t nWidth)
{
    const std::size_t nEnd = sBytes.size() + nWidth;
    sBytes += sName.substr(0, nWidth - 1);
    sBytes.resize(nEnd, '\0');
}

std::string nsRecordForms::Header(std::string_view sKind, int nVersion)
{
    constexpr std::size_t nKindWidth = 10;
    std::string sHeader;
    Append(sHeader, static_cast<std::uint64_t>(nVersion), 2);
    AppendName(sHeader, sKind, nKindWidth);
    sHeader += "\x23\x24";
    Append(sHeader, Checksum(sHeader), 2);
    return sHeader;
}
