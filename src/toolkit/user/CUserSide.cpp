#include "toolkit/user/CUserSide.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

namespace {

constexpr int StepMs = 100;

CUserSide* g_pReplacement = nullptr;

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
    objBox->setTextFormat(Qt::PlainText); // what a recorder says is no mark-up
    objBox->setIcon(stRow.nIcon);
    objBox->setWindowTitle(stPrompt.sCaption);
    objBox->setText(stPrompt.sText);
    objBox->setStandardButtons(stRow.nButtons);
    objBox->setDefaultButton(stRow.nDefault);
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
    QDialog objBox(pParent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    auto* const pText = new QLabel(sText);
    auto* const pBar = new QProgressBar;
    pText->setTextFormat(Qt::PlainText);
    pText->setVisible(!sText.isEmpty());
    pBar->setRange(0, nMs);
    pBar->setAccessibleName(sText);
    auto* const pLayout = new QVBoxLayout(&objBox);
    pLayout->addWidget(pText);
    pLayout->addWidget(pBar);
    pBar->setMinimumWidth(24 * objBox.fontMetrics().averageCharWidth());
    objBox.setModal(true);
    objBox.show();

    QElapsedTimer objClock;
    objClock.start();
    for (qint64 nLeft = nMs; nLeft > 0; nLeft = nMs - objClock.elapsed()) {
        pBar->setValue(static_cast<int>(nMs - nLeft));
        pBar->setFormat(QStringLiteral("%1 s").arg((nLeft + 999) / 1000));
        QEventLoop objLoop;
        QTimer::singleShot(StepMs, &objLoop, &QEventLoop::quit);
        objLoop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    // What was clicked and typed meanwhile is delivered now, while this box still keeps it from the windows behind.
    QCoreApplication::processEvents();
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
