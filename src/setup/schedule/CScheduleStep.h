#pragma once

#include <QUndoCommand>
#include <functional>

#include "setup/schedule/CScheduleDocument.h"

/// A change of one camera's week that can be taken back and done again.
class CScheduleStep : public QUndoCommand
{
public:
    /// Runs after the week was exchanged.
    using Show = std::function<void()>;

    /// The change is done already; `sWeekBefore` is what it was done to.
    CScheduleStep(const CScheduleDocument& objSchedule, int nCamera, const QString& sWeekBefore, Show fnShow);

    void undo() override { m_S_Exchange(); }
    void redo() override;

private:
    void m_S_Exchange();

    CScheduleDocument vm_objSchedule;
    int vm_nCamera;
    QString vm_sOther; ///< the week that the document doesn't have now
    Show vm_fnShow;
    bool vm_bDone = true;
};
