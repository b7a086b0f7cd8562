#pragma once

#include <QList>
#include <QSet>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "live/CLayoutStore.h"
#include "live/CLiveCell.h"
#include "recorders/CDipsResolver.h"
#include "recorders/CRecorderStore.h"

class CCameraNames;

/// Figures of all cells together.
struct stDef_GridTotals
{
    int nChannels = 0;
    int nLive = 0;
    double nRate = 0; ///< pictures a second
};

/// Pages of 1, 4, 9 or 16 live cells. Slots go from page to page; each holds a channel or nothing, and a channel stands
/// in one slot only. Only what is on the page streams, and connects again by itself.
class CLiveGrid : public QWidget
{
    Q_OBJECT

public:
    static constexpr int MaxShape = 16;
    static constexpr int PollMs = 250;

    /// All are borrowed.
    CLiveGrid(CEnvObj* pEnv, const CRecorderStore* pStore, CCameraNames* pNames, QWidget* pParent = nullptr);
    ~CLiveGrid() override; ///< ends all streams, side by side

    /// Takes shape, page and slots over; slots of recorders or channels that aren't there are emptied.
    void m_S_SetLayout(const stDef_Layout& stLayout);
    /// Fills these three in.
    void m_S_GetLayout(stDef_Layout& stLayout) const;
    /// The channels of the recorders in their order, as far as 64 slots go.
    std::vector<stDef_ChannelKey> m_F_ar_DefaultSlots() const;

    void m_S_SetShape(int nCells);
    int m_F_n_Shape() const { return vm_nShape; }
    void m_S_SetPage(int nPage);
    int m_F_n_Page() const { return vm_nPage; }
    int m_F_n_Pages() const;

    /// Puts a channel into the current cell, and goes on to the next one.
    void m_S_Place(const stDef_ChannelKey& stKey);
    /// Shows the page with the recorder's first channel, if it stands somewhere, else its channels on pages of their
    /// own.
    void m_S_ShowRecorder(int nNvrID);
    void m_S_RecorderChanged(int nNvrID);
    void m_S_RecorderRemoved(int nNvrID);
    /// The recorder is back: connects what waits for its next try.
    void m_S_RetryNow(int nNvrID);

    void m_S_ConnectAll();
    void m_S_DisconnectAll();
    /// The current cell over the whole grid, and back.
    void m_S_ToggleEnlarged();
    bool m_F_b_Enlarged() const { return vm_bEnlarged; }
    /// Asks the current cell for its picture.
    void m_S_Snapshot();

    /// Those of the page, in the order of its slots.
    QList<CLiveCell*> m_F_ar_Cells() const { return vm_arCells.mid(0, vm_nShape); }
    CLiveCell* m_F_p_Current() const { return vm_arCells[vm_nCurrent]; }
    /// Idle if the channel isn't on the page.
    emDef_LiveState m_F_n_State(const stDef_ChannelKey& stKey) const;
    stDef_GridTotals m_F_o_Totals() const;

Q_SIGNALS:
    void S_Changed();       ///< a state, a figure or the mark moved
    void S_LayoutChanged(); ///< shape, page or slots
    void S_Snapshot(QImage objImage, QString sTitle);
    void S_Lost(int nNvrID);
    /// The directory service told another address, which stands in the list now.
    void S_AddressFound(int nNvrID, QString sAddress, int nHttpPort);

protected:
    void resizeEvent(QResizeEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    CLiveCell* m_F_p_MakeCell(int nNumber);
    stDef_ChannelKey m_F_o_Slot(int nSlot) const;
    void m_S_SetSlot(int nSlot, const stDef_ChannelKey& stKey);
    int m_F_n_FindSlot(const stDef_ChannelKey& stKey) const;
    void m_S_PlaceAt(int nSlot, const stDef_ChannelKey& stKey);
    void m_S_Drop(CLiveCell* pCell, const QList<stDef_ChannelKey>& arKeys);
    void m_S_EmptySlots(const std::function<bool(const stDef_ChannelKey&)>& fnGone);
    void m_S_SetCurrent(int nCell);
    void m_S_Move(int nColumns, int nRows);
    void m_S_Arrange();
    void m_S_FillCells(const QList<CLiveCell*>& arCells);
    QString m_F_s_Title(const stDef_ChannelKey& stKey) const;
    void m_S_Retitle(const QList<CLiveCell*>& arCells);
    void m_S_Fill(CLiveCell* pCell, const stDef_ChannelKey& stKey);
    void m_S_LayOut();
    void m_S_OnLost(int nNvrID);
    void m_S_OnResolved(int nNvrID, const QByteArray& sDips, const QString& sAddress, int nHttpPort);
    const stDef_Recorder* m_F_p_Recorder(int nNvrID) const;
    QList<CLiveCell*> m_F_ar_CellsOf(int nNvrID) const;
    void m_S_PollAll();

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    CCameraNames* vm_pNames;
    QList<stDef_Recorder> vm_arRecorders;
    std::vector<stDef_ChannelKey> vm_arSlots;
    QList<CLiveCell*> vm_arCells; ///< the first ones are those of the page
    QSet<int> vm_setResolved;     ///< recorders whose address was looked up
    CDipsResolver* vm_pResolver;
    QTimer vm_objTimer;
    int vm_nShape = 4;
    int vm_nPage = 0;
    int vm_nCurrent = 0;
    bool vm_bEnlarged = false;
    bool vm_bShown = false;  ///< nothing streams before
    bool vm_bConnect = true; ///< what comes into a cell is connected
};
