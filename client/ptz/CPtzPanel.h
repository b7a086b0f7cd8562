#pragma once

#include <QDockWidget>
#include <QTimer>
#include <memory>

#include "fleetlink/fleetlink.h"
#include "ptz/CPtzDriver.h"
#include "ptz/CPtzKeys.h"

class CLiveGrid;
class CNvrQuery;
class CPtzPad;
class CRecorderWatch;
class QAbstractButton;
class QBoxLayout;
class QComboBox;
class QGridLayout;
class QLabel;
class QScrollArea;
class QSlider;

/// Moves the camera of the marked live cell: pad, zoom, focus, iris, automatic functions, presets and tours, each with
/// a key that acts while the focus is here or in the live cells. Whatever ends a cell's picture or takes the focus away
/// also stops the camera.
class CPtzPanel : public QDockWidget
{
    Q_OBJECT

public:
    /// All are borrowed, and must outlive the panel.
    CPtzPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CLiveGrid* pGrid, const CRecorderWatch* pWatch,
              QWidget* pParent);
    ~CPtzPanel() override; ///< stops the camera

    void m_S_SetSpeed(int nSpeed);
    int m_F_n_Speed() const { return vm_objDriver.m_F_n_Speed(); }

Q_SIGNALS:
    void S_SettingChanged(); ///< shown, hidden, or another speed

protected:
    void changeEvent(QEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;

private:
    struct stDef_Button
    {
        QAbstractButton* pButton;
        const stDef_PtzAction* pAction;
    };

    void m_S_Build();
    QWidget* m_F_p_Controls();
    QWidget* m_F_p_SpeedRow();
    void m_S_AddRow(QGridLayout& objGrid, stDef_Text stText, std::initializer_list<const char*> arActions);
    void m_S_AddPlaces(QBoxLayout& objLayout, QComboBox* pPlaces, stDef_Text stText,
                       std::initializer_list<const char*> arActions);
    QAbstractButton* m_F_p_Button(const char* pszAction);
    QLabel* m_F_p_Label(stDef_Text stText);
    void m_S_Connect();
    void m_S_ConnectButton(int nButton);
    void m_S_ConnectKeys();
    void m_S_Retranslate();

    void m_S_Follow();
    void m_S_SetReady(bool bReady);
    void m_S_AskPlaces();
    void m_S_TakePlaces(const QStringList& arPresets, const QStringList& arTours);
    void m_S_ShowPlaces();
    void m_S_Do(const stDef_PtzAction& stAction, int nDigit);
    void m_S_StopAll();
    void m_S_UpdateLine();
    QString m_F_s_Line() const;
    bool m_F_b_Acts(const QWidget* pWidget) const;

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    CLiveGrid* vm_pGrid;
    const CRecorderWatch* vm_pWatch;
    CPtzDriver vm_objDriver;
    QTimer vm_objAskSoon; ///< the mark may be on its way through the cells
    std::unique_ptr<CNvrQuery> vm_pQuery;
    QStringList vm_arPresets;
    QStringList vm_arTours;
    bool vm_bPlaces = false; ///< the camera's presets and tours are known
    bool vm_bReady = false;  ///< the camera can be driven
    int vm_nResult = 0;      ///< of the last command
    QScrollArea* vm_pScroll = nullptr;
    QWidget* vm_pControls = nullptr;
    CPtzPad* vm_pPad = nullptr;
    QLabel* vm_pCamera = nullptr;
    QLabel* vm_pLine = nullptr;
    QSlider* vm_pSpeed = nullptr;
    QLabel* vm_pSpeedValue = nullptr;
    QComboBox* vm_pPresets = nullptr;
    QComboBox* vm_pTours = nullptr;
    std::unique_ptr<CPtzKeys> vm_pKeys;
    QList<stDef_Button> vm_arButtons;
    QList<std::pair<QLabel*, stDef_Text>> vm_arLabels;
};
