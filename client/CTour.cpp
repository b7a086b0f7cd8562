#include "CTour.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPixmap>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>
#include <QTimer>
#include <algorithm>

#include "CDocumentPanel.h"
#include "CLiveGrid.h"
#include "CMainWindow.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MovingPictures = 3; // different ones, until a cell counts as moving

// A cell without a channel, or with a stream that has ended, will not come to life by waiting.
bool IsHopeless(const CLiveCell& objCell)
{
    return !objCell.m_F_p_Channel() || !objCell.m_F_p_Channel()->m_F_b_WantsPictures();
}

QString Describe(const std::vector<stDef_StateChange>& arHistory)
{
    QStringList arTexts;
    for (const stDef_StateChange& stChange : arHistory)
        arTexts.append(u"%1 %2 ms"_s.arg(CLiveState::s_F_s_Text(stChange.nState)).arg(stChange.nAtMs));
    return arTexts.join(u", "_s);
}

size_t Fingerprint(const stDef_Picture& stPicture)
{
    return qHashBits(stPicture.arPixels.data(), stPicture.arPixels.size() * sizeof(stPicture.arPixels[0]));
}

QString Bytes(bool bThere, std::int64_t nBytes)
{
    return bThere ? QString::number(nBytes) : u"-"_s;
}

} // namespace

CTour::CTour(CMainWindow* pWindow, const QString& sFolder) : CTour(pWindow, sFolder, stDef_Limits()) {}

CTour::CTour(CMainWindow* pWindow, const QString& sFolder, const stDef_Limits& stLimits)
    : vm_pWindow(pWindow), vm_sFolder(sFolder), vm_stLimits(stLimits)
{}

QStringList CTour::m_F_ar_Run()
{
    vm_arFailures.clear();
    if (!QDir().mkpath(vm_sFolder)) {
        m_S_Fail(u"the folder %1 can't be made"_s.arg(vm_sFolder));
        return vm_arFailures;
    }
    vm_pWindow->resize(1280, 800);
    vm_pWindow->show();
    m_S_Live();
    m_S_Exchange();
    m_S_Disconnect();
    m_S_Reconnect();
    m_S_WriteReport();
    return vm_arFailures;
}

bool CTour::m_F_b_Wait(const std::function<bool()>& fnDone, int nLimitMs)
{
    QElapsedTimer objClock;
    objClock.start();
    while (!fnDone()) {
        if (objClock.elapsed() >= nLimitMs)
            return false;
        QEventLoop objLoop;
        QTimer::singleShot(20, &objLoop, &QEventLoop::quit);
        objLoop.exec();
    }
    return true;
}

void CTour::m_S_Trigger(const char* pszAction)
{
    if (auto* const pAction = vm_pWindow->findChild<QAction*>(QString::fromLatin1(pszAction)))
        pAction->trigger();
    else
        m_S_Fail(u"there is no command %1"_s.arg(QString::fromLatin1(pszAction)));
}

void CTour::m_S_Grab(const QString& sName)
{
    const QString sFile = QDir(vm_sFolder).filePath(sName + u".png"_s);
    if (!vm_pWindow->grab().save(sFile, "PNG"))
        m_S_Fail(u"%1 can't be written"_s.arg(sFile));
}

void CTour::m_S_Fail(const QString& sWhat)
{
    vm_arFailures.append(sWhat);
}

bool CTour::m_F_b_WaitLive()
{
    const QList<CLiveCell*>& arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    QList<QSet<size_t>> arSeen(arCells.size());
    const auto Moves = [&](qsizetype i) {
        const CLiveCell& objCell = *arCells[i];
        if (objCell.m_F_p_Channel() && objCell.m_F_p_Channel()->m_F_n_State() == emDef_LiveState::Live &&
            objCell.m_F_o_Picture().nSerial != 0 && arSeen[i].size() < MovingPictures)
            arSeen[i].insert(Fingerprint(objCell.m_F_o_Picture()));
        return arSeen[i].size() >= MovingPictures;
    };
    const auto Settled = [&] {
        bool bSettled = true;
        for (qsizetype i = 0; i < arCells.size(); ++i)
            bSettled = (Moves(i) || IsHopeless(*arCells[i])) && bSettled;
        return bSettled;
    };
    bool bLive = m_F_b_Wait(Settled, vm_stLimits.nLiveMs);
    for (qsizetype i = 0; i < arCells.size(); ++i) {
        const CLiveChannel* const pChannel = arCells[i]->m_F_p_Channel();
        if (Moves(i))
            continue;
        bLive = false;
        m_S_Fail(u"cell %1 shows no moving picture: %2"_s.arg(i + 1).arg(pChannel ? Describe(pChannel->m_F_ar_History())
                                                                                  : u"no such channel"_s));
    }
    return bLive;
}

void CTour::m_S_Measure()
{
    const QList<CLiveCell*>& arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    QList<std::uint64_t> arBefore;
    for (const CLiveCell* const pCell : arCells)
        arBefore.append(pCell->m_F_p_Channel() ? pCell->m_F_p_Channel()->m_F_n_Pictures() : 0);
    QElapsedTimer objClock;
    objClock.start();
    m_F_b_Wait([] { return false; }, vm_stLimits.nMeasureMs);
    const double nSeconds = static_cast<double>(objClock.nsecsElapsed()) / 1e9;
    vm_arRows.clear();
    for (qsizetype i = 0; i < arCells.size(); ++i) {
        const CLiveChannel* const pChannel = arCells[i]->m_F_p_Channel();
        if (!pChannel)
            continue;
        const auto nPictures = static_cast<double>(pChannel->m_F_n_Pictures() - arBefore[i]);
        vm_arRows.append({pChannel->m_F_o_Source().sTitle, pChannel->m_F_n_FirstPictureMs(), nPictures / nSeconds,
                          Describe(pChannel->m_F_ar_History())});
        if (nPictures == 0 && pChannel->m_F_n_FirstPictureMs() >= 0)
            m_S_Fail(u"cell %1 stands still"_s.arg(i + 1));
    }
}

void CTour::m_S_Live()
{
    m_F_b_WaitLive();
    m_S_Measure();
    m_S_Grab(u"1-live"_s);
}

void CTour::m_S_Exchange()
{
    m_S_Trigger("Exchange");
    m_F_b_Wait([] { return false; }, 200); // the cells lay themselves out anew beside the table
    m_S_Grab(u"2-documents"_s);
    if (vm_pWindow->m_F_ar_Documents().isEmpty())
        m_S_Fail(u"no document was exchanged"_s);
    for (const stDef_DocumentResult& stResult : vm_pWindow->m_F_ar_Documents()) {
        if (!stResult.m_F_b_Ok())
            m_S_Fail(u"document %1: %2"_s.arg(stResult.sDocument, CDocumentPanel::s_F_s_Result(stResult)));
    }
}

void CTour::m_S_Disconnect()
{
    m_S_Trigger("DisconnectAll");
    const QList<CLiveCell*>& arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    const bool bEnded = m_F_b_Wait(
        [&] {
            return std::all_of(arCells.begin(), arCells.end(), [](const CLiveCell* pCell) {
                return !pCell->m_F_p_Channel() ||
                       pCell->m_F_p_Channel()->m_F_n_State() == emDef_LiveState::Disconnected;
            });
        },
        vm_stLimits.nEndMs);
    if (!bEnded)
        m_S_Fail(u"the streams don't end"_s);
    m_S_Grab(u"3-disconnected"_s);
    qsizetype nRow = 0;
    for (const CLiveCell* const pCell : arCells) {
        if (pCell->m_F_p_Channel() && nRow < vm_arRows.size())
            vm_arRows[nRow++].sStates = Describe(pCell->m_F_p_Channel()->m_F_ar_History());
    }
}

void CTour::m_S_Reconnect()
{
    m_S_Trigger("ConnectAll");
    m_F_b_WaitLive();
    m_S_Grab(u"4-connected-again"_s);
    qsizetype nRow = 0;
    for (const CLiveCell* const pCell : vm_pWindow->m_F_p_Grid()->m_F_ar_Cells()) {
        if (pCell->m_F_p_Channel() && nRow < vm_arRows.size())
            vm_arRows[nRow++].sStates += u"; again: %1"_s.arg(Describe(pCell->m_F_p_Channel()->m_F_ar_History()));
    }
}

QString CTour::m_F_s_Report() const
{
    QString sReport;
    QTextStream objOut(&sReport);
    const auto Cell = [](const QString& sText, int nWidth) {
        return nWidth < 0 ? sText.rightJustified(-nWidth) : sText.leftJustified(nWidth);
    };
    objOut << Cell(u"Channel"_s, 32) << Cell(u"First picture"_s, -14) << Cell(u"Frames/s"_s, -10) << "  States\n";
    for (const stDef_ChannelRow& stRow : vm_arRows)
        objOut << Cell(stRow.sTitle, 32)
               << Cell(stRow.nFirstPictureMs < 0 ? u"-"_s : u"%1 ms"_s.arg(stRow.nFirstPictureMs), -14)
               << Cell(QString::number(stRow.nRate, 'f', 1), -10) << "  " << stRow.sStates << '\n';
    objOut << '\n'
           << Cell(u"Document"_s, 14) << Cell(u"Fetched B"_s, -12) << Cell(u"ms"_s, -7) << Cell(u"Posted B"_s, -12)
           << Cell(u"ms"_s, -7) << "  Result\n";
    for (const stDef_DocumentResult& stResult : vm_pWindow->m_F_ar_Documents())
        objOut << Cell(stResult.sDocument, 14) << Cell(Bytes(stResult.bFetched, stResult.nFetchedBytes), -12)
               << Cell(QString::number(stResult.nFetchMs), -7)
               << Cell(Bytes(stResult.bPosted, stResult.nPostedBytes), -12)
               << Cell(Bytes(stResult.bPosted, stResult.nPostMs), -7) << "  " << CDocumentPanel::s_F_s_Result(stResult)
               << '\n';
    for (const QString& sFailure : vm_arFailures)
        objOut << "failed: " << sFailure << '\n';
    return sReport;
}

void CTour::m_S_WriteReport()
{
    QSaveFile objFile(QDir(vm_sFolder).filePath(u"tour.txt"_s));
    const QByteArray sReport = m_F_s_Report().toUtf8();
    if (!objFile.open(QIODevice::WriteOnly) || objFile.write(sReport) != sReport.size() || !objFile.commit())
        m_S_Fail(u"%1 can't be written"_s.arg(objFile.fileName()));
}
