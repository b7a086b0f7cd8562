#pragma once

#include <QTimeEdit>

#include "toolkit/controls/CSectionEdit.h"

/// A time of the day, or a number of seconds, by digits, arrows and wheel. Stepping a part beyond its end carries over
/// to the part before it, as long as the time stays within the day.
class CTimePicker : public CSectionEdit<QTimeEdit>
{
    Q_OBJECT

public:
    /// `pszFormat` as Qt has it: "HH:mm", "ss".
    explicit CTimePicker(const char* pszFormat, QWidget* pParent = nullptr);

    // What no picker can show counts as the nearest that it can.
    void m_S_SetMinutes(int nMinutes); ///< of the day
    int m_F_n_Minutes() const;
    void m_S_SetSeconds(int nSeconds); ///< 0 to 59
    int m_F_n_Seconds() const { return time().second(); }

    void stepBy(int nSteps) override;

protected:
    StepEnabled stepEnabled() const override;

private:
    int m_F_n_SecondsPerStep() const;
};
