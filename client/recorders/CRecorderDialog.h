#pragma once

#include <QDialog>
#include <QHash>
#include <functional>
#include <vector>

#include "fleetlink/fleetlink.h"
#include "recorders/CConnectionTest.h"
#include "recorders/CRecorderStore.h"

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Adds or edits a recorder. What is wrong stands beside its field while it is typed; OK stores the recorder.
class CRecorderDialog : public QDialog
{
    Q_OBJECT

public:
    /// Edits the recorder of that number; -1 adds one. The store is borrowed.
    CRecorderDialog(CRecorderStore* pStore, int nNvrID, QWidget* pParent = nullptr);
    ~CRecorderDialog() override;

    /// Number of the recorder that was stored; -1 before.
    int m_F_n_NvrID() const { return vm_nNvrID; }
    void accept() override;
    void done(int nResult) override;

protected:
    bool event(QEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    struct stDef_Bound
    {
        std::function<void(const stDef_RecorderForm&)> fnShow;
        std::function<void(stDef_RecorderForm&)> fnTake;
    };

    void m_S_MakeFields();
    void m_S_MakeTest();
    QLabel* m_F_p_AddRow(stDef_Text stLabel, QWidget* pField, emDef_RecorderField nField);
    QLineEdit* m_F_p_AddEdit(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField);
    QSpinBox* m_F_p_AddNumber(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField, int nMax);
    QComboBox* m_F_p_AddChoice(const char* pszName, stDef_Text stLabel, emDef_RecorderField nField,
                               std::initializer_list<stDef_Text> arTexts);
    /// Gives the control back, which shows the member and tells it from now on.
    template <class Value, class Control>
    Control* m_F_p_Bind(Value stDef_RecorderForm::*pMember, Control* pControl);
    void m_S_Load(stDef_RecorderForm stForm);
    stDef_RecorderForm m_F_o_Form() const;
    void m_S_Check();
    void m_S_ToggleTest();
    void m_S_ShowResult(const stDef_TestResult& stResult);
    void m_S_Retranslate();

    CRecorderStore* vm_pStore;
    int vm_nNvrID;
    CConnectionTest vm_objTest;
    stDef_TestResult vm_stResult;
    QFormLayout* vm_pForm = nullptr;
    std::vector<stDef_Bound> vm_arBound;
    QLineEdit* vm_pName = nullptr;
    QCheckBox* vm_pFromDips = nullptr;
    QLineEdit* vm_pDips = nullptr;
    QLineEdit* vm_pPassword = nullptr;
    QCheckBox* vm_pShow = nullptr;
    QSpinBox* vm_pChannels = nullptr;
    QPushButton* vm_pTest = nullptr;
    QPushButton* vm_pTake = nullptr;
    QLabel* vm_pVerdict = nullptr;
    QLabel* vm_pTwin = nullptr;
    QDialogButtonBox* vm_pButtons = nullptr;
    QHash<emDef_RecorderField, QLabel*> vm_mapFaults;
    QList<std::pair<QLabel*, stDef_Text>> vm_arLabels;
    QList<std::pair<QComboBox*, QList<stDef_Text>>> vm_arChoices;
};
