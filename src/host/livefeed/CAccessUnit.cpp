#include "host/livefeed/CAccessUnit.h"

#include <utility>

#include "host/livefeed/CStreamSyntax.h"

namespace {

constexpr std::size_t MaxBytes = 8u << 20; // no ring takes more; a broken stream may never begin a picture again

bool BeginsWithStartCode(const std::uint8_t* pData, std::size_t nSize)
{
    std::size_t nZeros = 0;
    while (nZeros < nSize && pData[nZeros] == 0)
        ++nZeros;
    return nZeros >= 2 && nZeros < nSize && pData[nZeros] == 1;
}

} // namespace

CAccessUnit::stDef_Piece CAccessUnit::m_F_o_Look(const std::uint8_t* pData, std::size_t nSize) const
{
    stDef_Piece stPiece;
    if (!BeginsWithStartCode(pData, nSize))
        return stPiece;
    bool bFirst = true;
    std::size_t n = CStreamSyntax::s_F_n_NextStart(pData, nSize, 0);
    while (n + 3 < nSize && !stPiece.bPicture) {
        const stDef_StreamUnit stUnit = CStreamSyntax::s_F_o_Unit(vm_nCodec, pData + n + 3, nSize - n - 3);
        stPiece.bBegins |= std::exchange(bFirst, false) && stUnit.bBegins;
        stPiece.bKey |= stUnit.bKey;
        stPiece.bPicture = stUnit.nKind == stDef_StreamUnit::emDef_Kind::Picture;
        n = CStreamSyntax::s_F_n_NextStart(pData, nSize, n + 3);
    }
    return stPiece;
}

bool CAccessUnit::m_F_b_Add(const std::uint8_t* pData, std::size_t nSize, std::int64_t nPtsUs, std::int64_t nArrivalUs)
{
    const stDef_Piece stPiece = m_F_o_Look(pData, nSize);
    const bool bWhole = stPiece.bBegins && vm_stNext.bPicture;
    if (bWhole || vm_stNext.arBytes.size() + nSize > MaxBytes) {
        std::swap(vm_stWhole, vm_stNext);
        vm_stNext.arBytes.clear();
        vm_stNext.bPicture = false;
        vm_stNext.bKey = false;
    }
    if (vm_stNext.arBytes.empty()) {
        if (!stPiece.bBegins)
            return false;
        vm_stNext.nPtsUs = nPtsUs;
    }
    vm_stNext.arBytes.insert(vm_stNext.arBytes.end(), pData, pData + nSize);
    vm_stNext.nArrivalUs = nArrivalUs;
    vm_stNext.bPicture |= stPiece.bPicture;
    vm_stNext.bKey |= stPiece.bKey;
    return bWhole;
}
