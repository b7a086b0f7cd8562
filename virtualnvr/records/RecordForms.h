#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What the files of a recorder are laid out of. Numbers are little-endian.
namespace nsRecordForms {

constexpr std::size_t HeaderSize = 16;
constexpr std::size_t RecordSize = 16; ///< of a data file
constexpr std::size_t MaxName = 32;    ///< of an image file in an index, its zero included
constexpr int IndexVersion = 0, DataVersion = 1, ImageVersion = 0;

/// CRC-16/CCITT-FALSE.
std::uint16_t Checksum(std::string_view sBytes);

void Append(std::string& sBytes, std::uint64_t nValue, int nWidth);

/// The first 16 bytes of a file. @param sKind "RecordDat", "RecordImg" or "RecordIdx"
std::string Header(std::string_view sKind, int nVersion);

/// Text that fills a field of a fixed width with zeros, one at least.
void AppendName(std::string& sBytes, std::string_view sName, std::size_t nWidth);

} // namespace nsRecordForms
