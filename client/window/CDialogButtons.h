#pragma once

#include <QDialogButtonBox>

/// The buttons at a dialog's foot, in the language of the host: Qt has words for them only where its own translations
/// are installed.
class CDialogButtons : public QDialogButtonBox
{
    Q_OBJECT

public:
    /// OK, Cancel or Close.
    explicit CDialogButtons(StandardButtons nButtons, QWidget* pParent = nullptr);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void m_S_Retranslate();
};
