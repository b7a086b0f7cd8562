#include <QCoreApplication>

#include "BenchTable.h"
#include "Benches.h"
#include "drivers/brands/Drivers.h"
#include "fleetlink/fleetlink.h"
#include "parameter/CDlgSetupPageParameters.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Many = 64;
constexpr int Few = 4;
constexpr int Rounds = 60;

/// A camera with so many entries in its resolution list, whose node has the last but one.
template <class Driver, class Sheet>
class CCameraOf : public Driver
{
public:
    CCameraOf(CWndNvrEmbedded* pNvr, int nEntries)
    {
        vm_sAbilities = u"<root><Support Protocol=\"1111\" RateControl=\"111\" FPS=\"1,3,5,10,15,20,25,30\">"
                        "<Resolution Count=\"%1\" MinFPS=\"1\" MaxFPS=\"30\"/><Quality_M Min=\"1\" Max=\"100\"/>"
                        "<Quality_S Min=\"1\" Max=\"100\"/>"_s.arg(nEntries);
        for (int i = 0; i < nEntries; ++i)
            vm_sAbilities += u"<Resolution%1 Width=\"%2\" Height=\"480\" Resolution=\"%2x480\" Codec=\"H264\" "
                             "ProfileID=\"%3\" MinFPS=\"1\" MaxFPS=\"30\" MinQuality=\"1\" MaxQuality=\"100\" "
                             "MinBitrate=\"64\" MaxBitrate=\"8192\" Bitrate=\"2048\" MaxTargetBitrate=\"4096\"/>"_s
                                 .arg(i, 3, 10, QChar(u'0'))
                                 .arg(640 + nEntries - 1 - i)
                                 .arg(i);
        vm_sAbilities += u"</Support></root>"_s;
        vm_sNode =
            u"<root><Camera count=\"1\"><Cam000 ProfileID=\"%1\" DefaultProfileID=\"%2\" VEncoderWidth_M=\"641\" "
            "VEncoderHeight_M=\"480\" Resolution=\"641x480\" FPS=\"15\" LowFPS=\"5\"/></Camera></root>"_s
                .arg(nEntries - 2)
                .arg(nEntries - 1);
        this->m_pNvr = pNvr;
        this->m_nCamIndex = 0;
    }
    bool m_F_b_GetSupport(CXmlObj* pSupport, int /*nTimeoutMs*/) override
    {
        return pSupport->m_F_b_LoadXML(vm_sAbilities);
    }

    /// To the painted page.
    void m_S_Open()
    {
        static_cast<CWndNvrEmbedded*>(this->m_pNvr)->vm_xmlCamera.m_F_b_LoadXML(vm_sNode);
        Sheet objSheet(this);
        objSheet.OnInitDialog();
        objSheet.show();
        QCoreApplication::processEvents();
        objSheet.setParent(nullptr);
    }

private:
    QString vm_sAbilities, vm_sNode;
};

template <class Driver, class Sheet>
void Measure(CWndNvrEmbedded* pNvr, const std::string& sBrand)
{
    constexpr double Growth = 4, GoalMs = 50;
    CCameraOf<Driver, Sheet> objMany(pNvr, Many), objFew(pNvr, Few);
    const auto [dMany, dFew] = MeasurePair(
        Rounds, [&] { objMany.m_S_Open(); }, [&] { objFew.m_S_Open(); });
    PrintRow({"parameters of " + sBrand + ": 64 entries : 4", dMany / 1e6, dFew / 1e6, "ms", Growth, "painted page"});
    PrintRow({"the same in ms", dMany / 1e6, 0, "ms", GoalMs, "64 entries"});
}

} // namespace

void BenchParameters()
{
    const CNvrHolder pHolder(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, nullptr));
    auto* const pNvr = static_cast<CWndNvrEmbedded*>(pHolder.get());
    Measure<CCamObj_AMTKV6, CDlgSetupPageParameter_AMTKV6>(pNvr, "AMTK V6");
    Measure<CCamObj_ONVIF, CDlgSetupPageParameter_ONVIF>(pNvr, "ONVIF");
    Measure<CCamObj_SMAX, CDlgSetupPageParameter_SMAX>(pNvr, "SMAX");
}
