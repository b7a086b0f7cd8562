#include "host/rewind/CRecFunc.h"

#include <QFileDevice>
#include <cstddef>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr unsigned char Marker[2] = {0x23, 0x24};

std::int16_t HeaderChecksum(const nsRecord::st_FileInfo& stInfo)
{
    return CRecFunc::s_F_n_CalChecksum(reinterpret_cast<const char*>(&stInfo),
                                       offsetof(nsRecord::st_FileInfo, nChecksum));
}

} // namespace

std::int16_t CRecFunc::s_F_n_CalChecksum(const char* pBytes, std::uint32_t nLength)
{
    unsigned nSum = 0xFFFF;
    for (std::uint32_t i = 0; i < nLength; ++i) {
        nSum ^= static_cast<unsigned>(static_cast<unsigned char>(pBytes[i])) << 8;
        for (int nBit = 0; nBit < 8; ++nBit)
            nSum = ((nSum << 1) ^ ((nSum & 0x8000) != 0 ? 0x1021u : 0u)) & 0xFFFF;
    }
    return static_cast<std::int16_t>(nSum);
}

bool CRecFunc::s_F_b_ChkFileInfo(const nsRecord::st_FileInfo* pInfo, const char* pszKind)
{
    return pInfo && std::memcmp(pInfo->arMarker, Marker, sizeof Marker) == 0 &&
           std::strncmp(pInfo->szKind, pszKind, sizeof pInfo->szKind) == 0 &&
           pInfo->nChecksum == HeaderChecksum(*pInfo);
}

nsRecord::st_FileInfo CRecFunc::s_F_o_MakeFileInfo(std::int16_t nVersion, const char* pszKind)
{
    nsRecord::st_FileInfo stInfo{};
    stInfo.nVersion = nVersion;
    std::strncpy(stInfo.szKind, pszKind, sizeof stInfo.szKind - 1);
    std::memcpy(stInfo.arMarker, Marker, sizeof Marker);
    stInfo.nChecksum = HeaderChecksum(stInfo);
    return stInfo;
}

bool CRecFunc::s_F_b_Sync(const QFileDevice& objFile)
{
#ifdef _WIN32
    return ::_commit(objFile.handle()) == 0;
#else
    return ::fsync(objFile.handle()) == 0;
#endif
}
