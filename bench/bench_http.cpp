#include <string>

#include "BenchTable.h"
#include "Benches.h"
#include "CPlainCurl.h"
#include "CVirtualNvr.h"
#include "host/Lib_Bedrock.h"

namespace {

constexpr int Rounds = 1500;
constexpr int TimeoutMs = 5000;
constexpr const char* GetUrl = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* PostUrl = "cgi-bin/SyncSetting.cgi?action=UpdateCamera";

} // namespace

void BenchHttp()
{
    CVirtualNvr nvr;
    stDef_VirtualNvrConfig stConfig;
    stConfig.bStreams = false;
    std::string sError;
    if (!nvr.m_F_b_Start(stConfig, sError)) {
        std::fprintf(stderr, "virtual recorder: %s\n", sError.c_str());
        return;
    }
    const stDef_Account stAccount = stConfig.arAccounts.front();
    CPlainCurl curl(nvr.m_F_n_HttpPort(), stAccount);
    CHTTP http;
    CMemManage mem(0);
    const int nPort = nvr.m_F_n_HttpPort();
    const QByteArray sUser = QByteArray::fromStdString(stAccount.sUser);
    const QByteArray sPassword = QByteArray::fromStdString(stAccount.sPassword);

    const stDef_Pair stGet = MeasurePair(
        Rounds, [&] { http.m_F_n_HTTPGetDataDirect("127.0.0.1", sUser, sPassword, nPort, GetUrl, &mem, TimeoutMs); },
        [&] { curl.Get(GetUrl); });
    PrintRow({"GET, kept connection, " + std::to_string(mem.m_F_n_GetMemSize()) + " bytes", stGet.dOurs / 1000,
              stGet.dBaseline / 1000, "us", 1.1, "plain libcurl"});

    const std::string sDocument = curl.vm_sBody.substr(curl.vm_sBody.find("<root"));
    const QByteArray sBody = QByteArray::fromStdString(sDocument.substr(0, sDocument.find("</root>") + 7));
    const stDef_Pair stPost = MeasurePair(
        Rounds / 5,
        [&] {
            http.m_F_n_HTTPPostDataDirect("127.0.0.1", sUser, sPassword, nPort, PostUrl, sBody,
                                          static_cast<int>(sBody.size()), {}, 0, TimeoutMs);
        },
        [&] { curl.Post(PostUrl, sBody.toStdString()); });
    PrintRow({"POST, kept connection, " + std::to_string(sBody.size()) + " bytes", stPost.dOurs / 1000,
              stPost.dBaseline / 1000, "us", 1.1, "plain libcurl"});
}
