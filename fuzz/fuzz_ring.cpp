#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Expect.h"
#include "host/Lib_Hostenv.h"
#include "host/hostenv/CRingLayout.h"

namespace {

constexpr int NvrId = 7;
constexpr std::size_t Shown = 2048; ///< bytes of the log that the input reaches

/// A sound ring with some packets in it, and its raw memory, as any process of the same user can write to it.
class CVictim
{
public:
    CVictim() : vm_objRing(NvrId, 0, 0, true)
    {
        vm_objRing.m_F_b_SetParam({});
        const std::vector<std::uint8_t> arData(300, 1);
        for (std::uint32_t nBytes = 20; nBytes <= 300; nBytes += 40)
            vm_objRing.m_F_b_Write({}, arData.data(), nBytes);
        const int nFile = shm_open(RingLayout::s_F_s_RingName(emDef_RingKind::Audio, NvrId, 0, 0).c_str(), O_RDWR, 0);
        vm_nSize = RingLayout::HeaderSize + RingLayout::CapacityAudio;
        vm_pMemory = static_cast<unsigned char*>(mmap(nullptr, vm_nSize, PROT_READ | PROT_WRITE, MAP_SHARED, nFile, 0));
        close(nFile);
        vm_arSound.assign(vm_pMemory, vm_pMemory + RingLayout::HeaderSize + Shown);
    }

    /// Words at places that the input names: 4 bytes of place and length, then the bytes.
    void m_S_Spoil(const std::uint8_t* pData, std::size_t nSize)
    {
        std::memcpy(vm_pMemory, vm_arSound.data(), vm_arSound.size());
        while (nSize > 4) {
            const std::size_t nAt = (pData[0] | std::size_t{pData[1]} << 8) % vm_arSound.size();
            const std::size_t nBytes = std::min({std::size_t{pData[2]} % 32, nSize - 4, vm_arSound.size() - nAt});
            std::memcpy(vm_pMemory + nAt, pData + 4, nBytes);
            pData += 4 + nBytes;
            nSize -= 4 + nBytes;
        }
    }

private:
    CShmEncAudio_CMS vm_objRing;
    unsigned char* vm_pMemory = nullptr;
    std::size_t vm_nSize = 0;
    std::vector<unsigned char> vm_arSound;
};

void ReadAll(CShmRingReader& objReader)
{
    st_RingFrame stFrame;
    int nReads = 0;
    for (auto nRead = emDef_RingRead::Frame; nRead == emDef_RingRead::Frame || nRead == emDef_RingRead::Lost;) {
        nRead = objReader.m_F_n_Read(stFrame);
        Expect(stFrame.arData.size() <= RingLayout::CapacityAudio, "a packet fits its ring");
        Expect(++nReads < 10000, "reading comes to an end");
    }
}

} // namespace

/// A reader before the memory of a broken or hostile writer: opened on it, and spoilt while it reads.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static CVictim s_objVictim;
    s_objVictim.m_S_Spoil(nullptr, 0);
    CShmRingReader objBefore;
    CShmRingReader objAfter;
    Expect(objBefore.m_F_b_Open(emDef_RingKind::Audio, NvrId, 0, 0), "a sound ring opens");
    s_objVictim.m_S_Spoil(pData, nSize);
    objAfter.m_F_b_Open(emDef_RingKind::Audio, NvrId, 0, 0);
    for (CShmRingReader* pReader : {&objBefore, &objAfter}) {
        ReadAll(*pReader);
        st_RingParam stParam;
        std::uint32_t nSerial = 0;
        if (pReader->m_F_b_GetParam(stParam, nSerial))
            Expect(stParam.nExtraSize <= st_RingParam::MaxExtra, "extra bytes fit their place");
        pReader->m_F_b_SeekToLatestKey();
        pReader->m_F_b_Wait(0);
        ReadAll(*pReader);
    }
    return 0;
}
