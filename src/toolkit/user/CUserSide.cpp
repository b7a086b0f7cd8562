#include "toolkit/user/CUserSide.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <chrono>

#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CHeldLoop.h"
#include "toolkit/user/CWaitBox.h"

namespace {

constexpr int StepMs = 100;

CUserSide* g_pReplacement = nullptr;
const CTextSource* g_pTexts = nullptr;

struct stDef_BoxRow
{
    QMessageBox::Icon nIcon;
    QMessageBox::StandardButtons nButtons;
    QMessageBox::StandardButton nDefault;
};

constexpr stDef_BoxRow g_astBoxes[] = {
    {QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok},
    {QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok},
    {QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes},
    {QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
};

struct stDef_ButtonRow
{
    QMessageBox::StandardButton nButton;
    stDef_Text stText; ///< its key is the object name, too
};

constexpr stDef_ButtonRow g_astButtons[] = {
    {QMessageBox::Ok, nsTexts::Ok},
    {QMessageBox::Yes, {"Yes", "&Yes"}},
    {QMessageBox::No, {"No", "&No"}},
};

// Qt has words of its own only for languages whose translations were installed with it: the host's come first.
void NameButtons(const QMessageBox& objBox)
{
    for (const stDef_ButtonRow& stRow : g_astButtons) {
        QAbstractButton* const pButton = objBox.button(stRow.nButton);
        if (!pButton)
            continue;
        const QString sKey = QString::fromLatin1(stRow.stText.pszKey);
        pButton->setObjectName(sKey);
        QString sText;
        if (g_pTexts && g_pTexts->m_F_n_LoadString(sKey, sText, QString::fromLatin1(stRow.stText.pszDefault)) > 0)
            pButton->setText(sText);
    }
}

/// A dialog that may go with its parent while it runs.
template <class Dialog>
class CGuarded
{
public:
    explicit CGuarded(QWidget* pParent) : vm_pDialog(new Dialog(pParent)) {}
    ~CGuarded() { delete vm_pDialog; }
    CGuarded(const CGuarded&) = delete;
    CGuarded& operator=(const CGuarded&) = delete;

    Dialog* operator->() const { return vm_pDialog; }
    Dialog* m_F_p_Get() const { return vm_pDialog; }
    int m_F_n_Run() { return CUserSide::s_F_o_Get().m_F_n_RunModal(*vm_pDialog); }
    bool m_F_b_Gone() const { return vm_pDialog.isNull(); }

private:
    QPointer<Dialog> vm_pDialog;
};

} // namespace

bool CUserSide::m_F_b_Prompt(QWidget* pParent, const stDef_Prompt& stPrompt)
{
    const stDef_BoxRow& stRow = g_astBoxes[static_cast<std::size_t>(stPrompt.nKind)];
    CGuarded<QMessageBox> objBox(pParent);
    objBox->setObjectName(QStringLiteral("Prompt"));
    objBox->setTextFormat(Qt::PlainText); // what a recorder says is no mark-up
    objBox->setIcon(stRow.nIcon);
    objBox->setWindowTitle(stPrompt.sCaption);
    objBox->setText(stPrompt.sText);
    objBox->setStandardButtons(stRow.nButtons);
    objBox->setDefaultButton(stRow.nDefault);
    NameButtons(*objBox.m_F_p_Get());
    const int nPressed = objBox.m_F_n_Run();
    return nPressed == QMessageBox::Yes || nPressed == QMessageBox::Ok;
}

QString CUserSide::m_F_s_File(QWidget* pParent, const stDef_FileQuestion& stQuestion)
{
    using enum stDef_FileQuestion::emDef_Kind;
    CGuarded<QFileDialog> objDialog(pParent);
    objDialog->setWindowTitle(stQuestion.sCaption);
    objDialog->setAcceptMode(stQuestion.nKind == Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    objDialog->setFileMode(stQuestion.nKind == Save   ? QFileDialog::AnyFile
                           : stQuestion.nKind == Open ? QFileDialog::ExistingFile
                                                      : QFileDialog::Directory);
    objDialog->setOption(QFileDialog::ShowDirsOnly, stQuestion.nKind == Folder);
    objDialog->setNameFilter(stQuestion.sFilter);
    objDialog->setDefaultSuffix(stQuestion.sSuffix);
    if (stQuestion.nKind == Folder)
        objDialog->setDirectory(stQuestion.sProposed);
    else
        objDialog->selectFile(stQuestion.sProposed);
    if (objDialog.m_F_n_Run() != QDialog::Accepted || objDialog.m_F_b_Gone())
        return {};
    return objDialog->selectedFiles().value(0);
}

int CUserSide::m_F_n_RunModal(QDialog& objDialog)
{
    return objDialog.exec();
}

void CUserSide::m_S_Wait(QWidget* pParent, const QString& sText, int nMs)
{
    const QString sCaption = pParent ? pParent->window()->windowTitle() : QString();
    const QPointer<CWaitBox> pBox(new CWaitBox(pParent, {sCaption, sText, {}}));
    const std::uint64_t nBegin = m_F_n_TickMs();
    bool bOver = false;
    const auto fnStop = [&] { bOver = true; };
    QObject::connect(pBox, &QDialog::rejected, pBox, fnStop);
    const auto fnTick = [&] {
        const int nGone =
            static_cast<int>(std::min<std::uint64_t>(m_F_n_TickMs() - nBegin, static_cast<std::uint64_t>(nMs)));
        if (pBox) {
            pBox->m_S_SetProgress(nGone, nMs);
            pBox->m_S_SetSeconds((nMs - nGone + 999) / 1000);
        }
        bOver |= !pBox || nGone >= nMs;
    };
    QTimer objTimer;
    QObject::connect(&objTimer, &QTimer::timeout, &objTimer, fnTick);
    objTimer.start(StepMs);
    fnTick();
    pBox->show();
    CHeldLoop([&] { return bOver; }, fnStop).m_S_Run();
    delete pBox;
}

QDateTime CUserSide::m_F_o_Now()
{
    return QDateTime::currentDateTime();
}

std::uint64_t CUserSide::m_F_n_TickMs()
{
    using namespace std::chrono;
    return static_cast<std::uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void CUserSide::m_S_After(int nMs, QObject* pContext, const std::function<void()>& fnCall)
{
    QTimer::singleShot(nMs, pContext, fnCall);
}

CUserSide& CUserSide::s_F_o_Get()
{
    static CUserSide s_objReal;
    return g_pReplacement ? *g_pReplacement : s_objReal;
}

void CUserSide::s_S_Replace(CUserSide* pUserSide)
{
    g_pReplacement = pUserSide;
}

void CUserSide::s_S_SetTexts(const CTextSource* pTexts)
{
    g_pTexts = pTexts;
}
