#include "toolkit/user/CRequestRun.h"

#include <QAbstractEventDispatcher>
#include <QTimer>
#include <atomic>
#include <climits>
#include <utility>

#include "host/Lib_Bedrock.h"
#include "toolkit/user/CHeldLoop.h"

namespace {

constexpr int SecondMs = 1000;

/// Work on a thread of its own, which wakes the GUI thread when it has ended.
class CWork
{
public:
    explicit CWork(const std::function<void()>& fnWork)
        : vm_fnWork(fnWork), vm_pDispatcher(QAbstractEventDispatcher::instance())
    {
        if (vm_objThread.m_F_n_CreaetThread(Enter, this) == 0)
            Enter(this); // the system has no thread to give: then it blocks
    }
    ~CWork() { vm_objThread.m_F_n_CloseThread(INT_MAX); }
    CWork(const CWork&) = delete;
    CWork& operator=(const CWork&) = delete;

    bool m_F_b_Done() const { return vm_bDone.load(std::memory_order_acquire); }

private:
    static unsigned int Enter(void* pSelf)
    {
        auto& self = *static_cast<CWork*>(pSelf);
        self.vm_fnWork();
        self.vm_bDone.store(true, std::memory_order_release);
        self.vm_pDispatcher->wakeUp();
        return 0;
    }

    const std::function<void()>& vm_fnWork;
    QAbstractEventDispatcher* vm_pDispatcher;
    std::atomic<bool> vm_bDone{false};
    CStdThread vm_objThread;
};

QDialog* DialogOf(QWidget* pParent)
{
    QWidget* const pWindow = pParent ? pParent->window() : nullptr;
    return pWindow && pWindow->isVisible() ? qobject_cast<QDialog*>(pWindow) : nullptr;
}

} // namespace

CRequestRun::CRequestRun(QWidget* pParent, stDef_WaitTexts stTexts)
    : vm_pParent(pParent),
      vm_pDialog(DialogOf(pParent)),
      vm_bHasParent(pParent != nullptr),
      vm_bHasDialog(!vm_pDialog.isNull()),
      vm_stTexts(std::move(stTexts))
{
    vm_objClock.start();
}

CRequestRun::~CRequestRun()
{
    delete vm_pBox;
}

bool CRequestRun::m_F_b_Run(const std::function<void()>& fnWork, const std::function<void()>& fnStop)
{
    if (vm_bStopped || m_F_b_WindowGone())
        return false;
    CWork objWork(fnWork);
    vm_fnStop = fnStop;
    const auto fnDone = [&] {
        if (m_F_b_WindowGone())
            m_S_Stop();
        return objWork.m_F_b_Done();
    };
    CHeldLoop objLoop(fnDone, [this] { m_S_Stop(); });
    QTimer objTimer;
    const auto fnTick = [&] {
        m_S_Tick();
        objLoop.m_S_LetPass(vm_pBox);
        objTimer.start(static_cast<int>(SecondMs - vm_objClock.elapsed() % SecondMs));
    };
    QObject::connect(&objTimer, &QTimer::timeout, &objTimer, fnTick);
    fnTick();
    objLoop.m_S_Run();
    vm_fnStop = {};
    return true;
}

void CRequestRun::m_S_Stop()
{
    vm_bStopped = true;
    if (const auto fnStop = std::exchange(vm_fnStop, {}))
        fnStop();
}

void CRequestRun::m_S_ShowProgress(const QString& sText, int nDone, int nAll)
{
    if (vm_bStopped)
        return;
    m_F_o_Box().m_S_SetText(sText);
    m_F_o_Box().m_S_SetProgress(nDone, nAll);
}

// A parent that went took the box with it; the work then ends by itself.
void CRequestRun::m_S_Tick()
{
    const qint64 nSeconds = vm_objClock.elapsed() / SecondMs;
    if (!vm_bStopped && (vm_pBox || nSeconds > 0))
        m_F_o_Box().m_S_SetSeconds(nSeconds);
}

bool CRequestRun::m_F_b_WindowGone() const
{
    return (vm_bHasParent && !vm_pParent) || (vm_bHasDialog && (!vm_pDialog || !vm_pDialog->isVisible()));
}

CWaitBox& CRequestRun::m_F_o_Box()
{
    if (!vm_pBox) {
        vm_pBox = new CWaitBox(vm_pParent, vm_stTexts);
        QObject::connect(vm_pBox, &QDialog::rejected, vm_pBox, [this] { m_S_Stop(); });
        vm_pBox->show();
    }
    return *vm_pBox;
}
