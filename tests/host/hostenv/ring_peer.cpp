// The other process of the ring tests. Prints "ready 1" when it has begun and runs until it is killed.
//   ring_peer write <nvr>    writes packets as fast as it can
//   ring_peer read <nvr>     reads them; exits with 3 at the first torn one

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "host/hostenv/RingContent.h"

namespace {

int WriteForever(int nNvr)
{
    CShmEncVideo_CMS ring(nNvr, 0, 0, true);
    std::vector<std::uint8_t> arData;
    if (!ring.m_F_b_ClaimWriter(&ring) || !ring.m_F_b_SetParam({}))
        return 2;
    for (std::uint32_t nNumber = 0;; ++nNumber) {
        if (!RingContent::Write(ring, arData, nNumber))
            return 2;
        if (nNumber == 0) {
            std::puts("ready 1");
            std::fflush(stdout);
        }
    }
}

int ReadForever(int nNvr)
{
    CShmRingReader reader;
    st_RingFrame stFrame;
    bool bTold = false;
    while (true) {
        if (!reader.m_F_b_IsOpen() && !reader.m_F_b_Open(emDef_RingKind::Video, nNvr, 0, 0)) {
            std::this_thread::yield();
            continue;
        }
        const emDef_RingRead nRead = reader.m_F_n_Read(stFrame);
        std::uint32_t nNumber = 0;
        if (nRead == emDef_RingRead::Frame && !RingContent::Check(stFrame, nNumber))
            return 3;
        if (nRead == emDef_RingRead::Frame && !bTold) {
            bTold = true;
            std::puts("ready 1");
            std::fflush(stdout);
        }
        if (nRead == emDef_RingRead::Empty)
            reader.m_F_b_Wait(100);
        if (nRead == emDef_RingRead::Closed)
            reader.m_S_Close();
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    return !std::strcmp(argv[1], "write") ? WriteForever(std::atoi(argv[2])) : ReadForever(std::atoi(argv[2]));
}
