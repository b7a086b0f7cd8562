#include <malloc.h>

#include <QTemporaryDir>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

void BenchObjects()
{
    constexpr int Objects = 1000;
    QTemporaryDir dir;
    CEnvObj env;
    env.m_F_b_Init(dir.path());
    CXmlObj& xmlList = *env.m_F_p_GetMemSysXML();
    for (int i = 0; i < Objects; ++i) {
        const QString sNode = QString::asprintf("/root/NVR/N%03d", i);
        xmlList.m_F_b_SetValue(sNode, u"Type"_s, 1);
        xmlList.m_F_b_SetValue(sNode, u"IP"_s, u"127.0.0.1"_s);
        xmlList.m_F_b_SetValue(sNode, u"RtspPort"_s, 1); // nobody there: the stream objects stand, their threads end
    }
    stDef_NvrInit stInit;
    stInit.sUID = "admin";

    const auto nBefore = mallinfo2();
    std::vector<CNvrHolder> arNvr;
    for (int i = 0; i < Objects; ++i) {
        stInit.nNvrID = i;
        arNvr.emplace_back(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(i, nullptr, &env));
        arNvr.back()->m_F_n_Init(stInit);
        arNvr.back()->m_S_Connect(i, 0, 0);
    }
    for (const CNvrHolder& pNvr : arNvr)
        pNvr->m_S_Disconnect(true);
    const auto nAfter = mallinfo2();
    const double dBytes = static_cast<double>(nAfter.uordblks + nAfter.hblkhd - nBefore.uordblks - nBefore.hblkhd);
    PrintRow({"connection object with a stream", dBytes / Objects / 1024, 0, "KB", 64, "heap; rings not counted"});

    std::vector<double> arMs;
    for (int nRound = 0; nRound < 200; ++nRound) {
        const long long nBegin = NowNs();
        for (const CNvrHolder& pNvr : arNvr)
            pNvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - 10000);
        arMs.push_back(static_cast<double>(NowNs() - nBegin) / 1e6);
    }
    PrintRow({"poll of 1000 connection objects", Median(arMs), 0, "ms", 1, "median of 200"});
}
