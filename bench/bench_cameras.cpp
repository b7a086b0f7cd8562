#include <QCoreApplication>
#include <QPushButton>
#include <QTreeWidget>
#include <memory>

#include "BenchTable.h"
#include "Benches.h"
#include "fleetlink/fleetlink.h"
#include "setup/CDlgSetupPageSystemSetting.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Many = 64;
constexpr int Few = 8;
constexpr int Rounds = 100;

/// The sheet of a recorder that has so many cameras.
class CSheetOf
{
public:
    explicit CSheetOf(int nCameras)
        : vm_pHolder(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, nullptr)),
          vm_pNvr(static_cast<CWndNvrEmbedded*>(vm_pHolder.get()))
    {
        QString sXml = u"<root><Camera count=\"%1\">"_s.arg(nCameras);
        static constexpr int s_arVendors[] = {2, 4, 6, 8, 0, 7, 9, 10};
        for (int i = 0; i < nCameras; ++i) {
            sXml += u"<Cam%1 VendorID=\"%2\" Model=\"M\" Name=\"Camera %1\" IP=\"10.0.0.%3\" HttpPort=\"80\" "
                    "RtspPort=\"554\" UserName=\"admin\" Password=\"p\" Enable=\"1\"/>"_s.arg(i, 3, 10, QChar(u'0'))
                        .arg(s_arVendors[i % 8])
                        .arg(i + 1);
        }
        vm_pNvr->vm_xmlCamera.m_F_b_LoadXML(sXml + u"</Camera></root>"_s);
        vm_pNvr->vm_xmlSystemInfo.m_F_b_LoadXML(u"<root><Local MaxCam=\"64\"/></root>"_s);
    }

    /// Opens it anew, up to its first painting.
    void m_S_Open()
    {
        vm_pSheet = std::make_unique<CDlgSetupPageSystemSetting>(vm_pNvr, u"Sheet"_s, 0);
        vm_pSheet->OnInitDialog();
        vm_pSheet->show();
        QCoreApplication::processEvents();
    }
    void m_S_DeleteFirst()
    {
        auto* const pTree = vm_pSheet->findChild<QTreeWidget*>();
        pTree->setCurrentItem(pTree->topLevelItem(0));
        vm_pSheet->findChild<QPushButton*>(u"Delete"_s)->click();
    }
    void m_S_Close() { vm_pSheet.reset(); }

private:
    CNvrHolder vm_pHolder; // goes after the sheet
    CWndNvrEmbedded* vm_pNvr;
    std::unique_ptr<CDlgSetupPageSystemSetting> vm_pSheet;
};

double MsOf(const std::function<void()>& fnDo)
{
    const long long nBegin = NowNs();
    fnDo();
    return static_cast<double>(NowNs() - nBegin) / 1e6;
}

} // namespace

void BenchCameras()
{
    std::vector<double> arOpen[2], arDelete[2];
    for (int nRound = 0; nRound < Rounds; ++nRound) {
        for (const int i : {0, 1}) {
            CSheetOf objSheet(i == 0 ? Many : Few);
            arOpen[i].push_back(MsOf([&] { objSheet.m_S_Open(); }));
            arDelete[i].push_back(MsOf([&] { objSheet.m_S_DeleteFirst(); }));
            objSheet.m_S_Close();
        }
    }
    constexpr double Linear = static_cast<double>(Many) / Few;
    PrintRow({"Camera page opened: 64 cameras : 8", Median(arOpen[0]), Median(arOpen[1]), "ms", Linear,
              "the whole sheet, to its first painting"});
    PrintRow({"first camera deleted: of 64 : of 8", Median(arDelete[0]), Median(arDelete[1]), "ms", Linear,
              "nodes, objects, tree and form"});
}
