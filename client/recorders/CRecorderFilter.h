#pragma once

#include <QLineEdit>

class CRecorderTree;

/// The field that filters a recorder tree. Ctrl+F goes to it, Esc empties it, Down and Enter go on to the tree.
class CRecorderFilter : public QLineEdit
{
    Q_OBJECT

public:
    explicit CRecorderFilter(CRecorderTree* pTree, QWidget* pParent = nullptr);

protected:
    bool event(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    void m_S_Retranslate();

    CRecorderTree* vm_pTree;
};
