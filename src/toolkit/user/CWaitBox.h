#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

/// The words of a wait.
struct stDef_WaitTexts
{
    QString sCaption;
    QString sFor;  ///< what is waited for
    QString sStop; ///< of the button; none if it is empty
};

/// A small box that tells what is waited for and for how long. Its button, Esc and Enter reject it.
class CWaitBox : public QDialog
{
    Q_OBJECT

public:
    CWaitBox(QWidget* pParent, const stDef_WaitTexts& stTexts);

    void m_S_SetText(const QString& sText);
    void m_S_SetSeconds(qint64 nSeconds);
    /// Shows a bar, too.
    void m_S_SetProgress(int nDone, int nAll);

private:
    QLabel* vm_pText;
    QLabel* vm_pSeconds;
    QProgressBar* vm_pBar;
};
