#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <memory>

class CEnvObj;
class CNvrQuery;
class CRecorderStore;
class CRecorderTree;
class CRecorderWatch;
class QGridLayout;
class QLabel;

/// Tells of the recorder that is picked in the tree with which account the host logs in, what that account may see, and
/// what the recorder can. It asks beside the window.
class CLoginPanel : public QWidget
{
    Q_OBJECT

public:
    /// All are borrowed.
    CLoginPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CRecorderTree* pTree, const CRecorderWatch* pWatch,
                QWidget* pParent = nullptr);
    ~CLoginPanel() override;

    /// The list has changed: asks anew.
    void m_S_Refresh();

    /// Numbers of the channels, from 1, whose character in the mask is a 1, as in "1-4, 7" with dashes.
    static QString s_F_s_Channels(const QString& sMask);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void m_S_Build();
    void m_S_Pick();
    void m_S_Ask();
    void m_S_Show();
    void m_S_Tint();
    QString m_F_s_View() const;
    QString m_F_s_Styles() const;
    QString m_F_s_SecondOnly() const;

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    CRecorderTree* vm_pTree;
    const CRecorderWatch* vm_pWatch;
    std::unique_ptr<CNvrQuery> vm_pQuery;
    QTimer vm_objAskSoon; ///< the mark may be on its way through the tree
    int vm_nNvrID = -1;
    bool vm_bAsking = false;
    QString vm_sRights;   ///< a character a channel; empty if the recorder doesn't tell
    QStringList vm_arCan; ///< flags of what the recorder can
    QLabel* vm_pTitle;
    QGridLayout* vm_pForm;
    QList<QLabel*> vm_arNames;
    QList<QLabel*> vm_arValues;
};
