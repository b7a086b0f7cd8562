// The smallest host: connects the first channel of each listed recorder, prints the states for a while, disconnects.
//   minimal_host <configuration folder> [seconds]
// The folder holds the recorder list, as the sample host writes it. Exit code 0 if every stream played.

#include <fleetlink/fleetlink.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <cstdio>
#include <vector>

namespace {

constexpr std::uint64_t SilenceMs = 10000;
constexpr unsigned long PollMs = 100;

struct Recorder
{
    int nNvrID;
    CNvrHolder pNvr;
    nsCMS::emDef_ConnectStat nLast = nsCMS::ConnectStat_None;
    bool bPlayed = false;
};

stDef_NvrInit ReadInit(CXmlObj& xmlList, int nNvrID)
{
    const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
    QString sIP, sUID, sPWD;
    xmlList.m_F_n_GetValue(sNode, "IP", sIP, {});
    xmlList.m_F_n_GetValue(sNode, "UID", sUID, {});
    xmlList.m_F_n_GetValue(sNode, "PWD", sPWD, {});
    stDef_NvrInit stInit;
    stInit.nNvrID = nNvrID;
    stInit.sIP = sIP.toLatin1();
    stInit.sUID = sUID.toLatin1();
    stInit.sPWD = CWinAES_CMS::s_F_s_Decrypt(sPWD).toLatin1();
    stInit.nHttpPort = xmlList.m_F_n_GetValueInt(sNode, "HttpPort", 80);
    return stInit;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    CEnvObj& objEnv = CAppEnv::s_objEnv;
    if (argc < 2 || !objEnv.m_F_b_Init(QString::fromLocal8Bit(argv[1])))
        return std::fprintf(stderr, "usage: minimal_host <configuration folder> [seconds]\n"), 2;

    std::vector<Recorder> arRecorders;
    for (int nNvrID = 0; nNvrID <= 1000; ++nNvrID) {
        CNvrHolder pNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, nullptr, &objEnv));
        if (pNvr && pNvr->m_F_n_Init(ReadInit(*objEnv.m_F_p_GetMemSysXML(), nNvrID)) == 1) {
            pNvr->m_S_Connect(nNvrID, 0, 0);
            arRecorders.push_back({nNvrID, std::move(pNvr)});
        }
    }

    QElapsedTimer clock;
    for (clock.start(); clock.elapsed() < 1000 * (argc > 2 ? atoi(argv[2]) : 10); QThread::msleep(PollMs)) {
        for (Recorder& recorder : arRecorders) {
            const auto nStat = recorder.pNvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - SilenceMs);
            if (nStat != std::exchange(recorder.nLast, nStat))
                std::printf("N%03d %6lld ms state %d\n", recorder.nNvrID, clock.elapsed(), nStat);
            recorder.bPlayed |= nStat == nsCMS::ConnectStat_Connected;
        }
    }
    bool bAll = !arRecorders.empty();
    for (Recorder& recorder : arRecorders) {
        bAll &= recorder.bPlayed;
        recorder.pNvr->m_S_Disconnect(true);
    }
    return bAll ? 0 : 1;
}
