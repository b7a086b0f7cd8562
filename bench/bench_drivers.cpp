#include <QString>
#include <cstdio>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "cgi/CCameraRegistry.h"
#include "drivers/CCamObj_Base.h"
#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Rounds = 300;
constexpr int Present = 16; // cameras that the recorder has already

/// A camera of each brand among those of the virtual recorder.
const struct
{
    const char* pszBrand;
    int nVendorID;
    const char* pszIP;
    int nPort;
} g_astCameras[] = {
    {"AMTK V5", 0, "192.168.1.21", 80},   {"AMTK V6", 2, "192.168.1.22", 80},    {"ONVIF", 4, "192.168.1.23", 8080},
    {"ZAVIO", 6, "192.168.1.24", 80},     {"SMAX", 7, "169.254.12.7", 80},       {"FITI", 8, "192.168.1.26", 80},
    {"PIXORD", 9, "169.254.80.41", 8081}, {"DYNACOLOR", 10, "192.168.1.28", 80},
};

/// All that one round changes, made before the clock runs: documents that nothing was read from yet, and places to load
/// to.
struct stDef_Round
{
    CXmlObj xmlDetect, xmlSupport, xmlCamera;
    CXmlObj arLoaded[2];
    pugi::xml_document arPlain[2];
};

QString CameraDocument()
{
    QString sXml = u"<root><Camera count=\"%1\">"_s.arg(Present);
    for (int i = 0; i < Present; ++i) {
        sXml += QString::asprintf("<Cam%03d", i);
        for (int nKey = 0; nKey < 40; ++nKey)
            sXml += u" Key%1=\"%2\""_s.arg(nKey).arg(i * 100 + nKey);
        sXml += u"/>"_s;
    }
    return sXml + u"</Camera></root>"_s;
}

class CMapping
{
public:
    CMapping(CWndNvrEmbedded& objNvr, int nVendorID, const std::string& sDetect, const std::string& sSupport)
        : vm_objNvr(objNvr),
          vm_pCamera(CCamObj_Base::s_F_p_CreateCamObj(nVendorID, &objNvr)),
          vm_arPlainTexts{sDetect, sSupport},
          vm_arTexts{QString::fromStdString(sDetect), QString::fromStdString(sSupport)}
    {
        vm_pCamera->m_nCamIndex = Present;
    }

    void m_S_Measure(const std::string& sName)
    {
        m_S_Prepare();
        const stDef_Pair stOurs = MeasurePair(
            Rounds, [this] { m_S_Map(); }, [this] { m_S_Load(); });
        const std::string sSizes = std::to_string(vm_arPlainTexts[0].size() + vm_arPlainTexts[1].size()) + " bytes";
        PrintRow({"map one add, " + sName, stOurs.dOurs / 1000, stOurs.dBaseline / 1000, "us", 1,
                  "loading both replies with CXmlObj, " + sSizes});
        m_S_Prepare();
        const stDef_Pair stPlain = MeasurePair(
            Rounds, [this] { m_S_Map(); }, [this] { m_S_LoadPlain(); });
        PrintRow({"", stPlain.dOurs / 1000, stPlain.dBaseline / 1000, "us", 0, "the same with pugixml directly"});
    }

private:
    void m_S_Prepare()
    {
        vm_arRounds = std::vector<stDef_Round>(Rounds + 1);
        const QString sCameras = CameraDocument();
        for (stDef_Round& stRound : vm_arRounds) {
            stRound.xmlDetect.m_F_b_LoadXML(vm_arTexts[0]);
            stRound.xmlSupport.m_F_b_LoadXML(vm_arTexts[1]);
            stRound.xmlCamera.m_F_b_LoadXML(sCameras);
        }
        vm_nRound = 0;
    }
    void m_S_Map()
    {
        stDef_Round& stRound = vm_arRounds[vm_nRound];
        std::swap(vm_objNvr.vm_xmlCamera, stRound.xmlCamera);
        vm_pCamera->m_F_b_ApplyDetect(&stRound.xmlDetect);
        vm_pCamera->m_F_b_ApplyTemplate(&stRound.xmlDetect, &stRound.xmlSupport);
    }
    void m_S_Load()
    {
        for (int i = 0; i < 2; ++i)
            vm_arRounds[vm_nRound].arLoaded[i].m_F_b_LoadXML(vm_arTexts[i]);
        ++vm_nRound;
    }
    void m_S_LoadPlain()
    {
        for (int i = 0; i < 2; ++i)
            vm_arRounds[vm_nRound].arPlain[i].load_buffer(vm_arPlainTexts[i].data(), vm_arPlainTexts[i].size());
        ++vm_nRound;
    }

    CWndNvrEmbedded& vm_objNvr;
    std::unique_ptr<CCamObj_Base> vm_pCamera;
    std::string vm_arPlainTexts[2]; // detect reply and abilities
    QString vm_arTexts[2];
    std::vector<stDef_Round> vm_arRounds;
    std::size_t vm_nRound = 0;
};

} // namespace

void BenchDrivers()
{
    CCameraRegistry objRegistry;
    std::string sError;
    CWndNvrEmbedded objNvr(nullptr, nullptr);
    objNvr.vm_xmlSystem.m_F_b_LoadXML(u"<root><system><camera><template Resolution=\"4\" FPS=\"15\" Quality=\"50\" "
                                      "RateCtrl=\"1\"/></camera></system></root>"_s);
    objRegistry.m_F_b_Load(CAMERA_FOLDER, sError);
    for (const auto& stCamera : g_astCameras) {
        const CCameraRegistry::stDef_Wanted stWanted{stCamera.pszIP, stCamera.nPort, "admin", "cam&Era#1",
                                                     stCamera.nVendorID};
        const std::string sDetect = objRegistry.m_F_s_Detect(stWanted), sSupport = objRegistry.m_F_s_Support(stWanted);
        if (sDetect.empty() || sSupport.empty()) {
            std::fprintf(stderr, "drivers: %s doesn't answer %s\n", stCamera.pszBrand, sError.c_str());
            continue;
        }
        CMapping(objNvr, stCamera.nVendorID, sDetect, sSupport).m_S_Measure(stCamera.pszBrand);
    }
}
