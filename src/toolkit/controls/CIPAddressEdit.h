#pragma once

#include <QList>
#include <QWidget>

class QKeyEvent;
class QLineEdit;
class QStackedLayout;

/// An edit for an IPv4 address, of four parts with dots between them. A dot and the arrows lead from part to part, so
/// does a third digit; a number above 255 becomes 255, stays selected and tells the range. A whole address can be
/// pasted into any part. For the Tab key it is one control.
///
/// What a document brought stands as it came until it is edited: an address in its plain form, and what is none, as a
/// host name, letter by letter, in the place of the parts. The first digit, Delete, or an address that is pasted then
/// takes its place.
class CIPAddressEdit : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText USER true)

public:
    explicit CIPAddressEdit(QWidget* pParent = nullptr);

    void setText(const QString& sText);
    /// What was set, letter by letter, as long as nobody edited it; then the plain form of the parts, where an empty
    /// one is 0. Empty if all parts are.
    QString text() const;
    void clear() { setText({}); }
    /// Whether it shows no address: nothing, or 0.0.0.0.
    bool m_F_b_IsNone() const;

    /// The form in which addresses are compared: without leading zeros, "0" and "0.0.0" as 0.0.0.0. Any other text
    /// stays as it is.
    static QString s_F_s_Plain(const QString& sText);

public Q_SLOTS:
    /// Selects the first part, or what stands in place of the parts.
    void selectAll();

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;

private:
    void m_S_MakeParts();
    void m_S_ShowParts(const QStringList& arParts);
    void m_S_Enter(int nPart, int nCursor);
    void m_S_EnterSelected(int nPart);
    void m_S_OnEdited(int nPart);
    void m_S_ShowMenu(int nPart, const QPoint& ptPart);
    bool m_F_b_Paste(int nPart);
    bool m_F_b_OtherKey(const QKeyEvent& objKey);
    bool m_F_b_PartKey(int nPart, const QKeyEvent& objKey);
    bool m_F_b_Leave(int nPart, int nKey);

    QStackedLayout* vm_pStack;    ///< the parts, or what is no address
    QList<QLineEdit*> vm_arParts; ///< four
    QLineEdit* vm_pOther;         ///< shows what is no address
    QString vm_sCame;             ///< what was set
    bool vm_bEdited = false;
    bool vm_bPassed = false; ///< the third digit led to this part: a dot that is typed out of habit leads no further
};
