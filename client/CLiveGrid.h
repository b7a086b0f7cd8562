#pragma once

#include <QList>
#include <QTimer>
#include <QWidget>

#include "CLiveCell.h"

/// Figures of all cells together.
struct stDef_GridTotals
{
    int nChannels = 0;
    int nLive = 0;
    double nRate = 0; ///< pictures a second
};

/// Four live cells and the timer that polls them.
class CLiveGrid : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Columns = 2;
    static constexpr int Rows = 2;
    static constexpr int PollMs = 250;

    explicit CLiveGrid(QWidget* pParent = nullptr);
    ~CLiveGrid() override; ///< ends all streams, side by side

    /// Ends what is shown and gives the cells these streams, unconnected; cells beyond the list stay empty.
    void m_S_Assign(CEnvObj* pEnv, const QList<stDef_LiveSource>& arSources, const stDef_NvrInit& stInit);
    void m_S_ConnectAll();
    void m_S_DisconnectAll();

    const QList<CLiveCell*>& m_F_ar_Cells() const { return vm_arCells; }
    stDef_GridTotals m_F_o_Totals() const;

Q_SIGNALS:
    void S_Changed(); ///< a state or a figure moved

private:
    void m_S_RequestStopAll();
    void m_S_PollAll();

    QList<CLiveCell*> vm_arCells;
    QTimer vm_objTimer;
};
