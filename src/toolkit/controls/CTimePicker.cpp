#include "toolkit/controls/CTimePicker.h"

#include <algorithm>

namespace {

constexpr int SecondsPerMinute = 60;
constexpr int SecondsPerHour = 3600;
constexpr int LastMinute = 24 * 60 - 1;
constexpr int LastSecond = 59;

} // namespace

CTimePicker::CTimePicker(const char* pszFormat, QWidget* pParent) : CSectionEdit(pParent)
{
    setDisplayFormat(QString::fromLatin1(pszFormat));
}

void CTimePicker::m_S_SetMinutes(int nMinutes)
{
    const int nShown = std::clamp(nMinutes, 0, LastMinute);
    setTime(QTime(nShown / SecondsPerMinute, nShown % SecondsPerMinute));
}

int CTimePicker::m_F_n_Minutes() const
{
    return time().hour() * SecondsPerMinute + time().minute();
}

void CTimePicker::m_S_SetSeconds(int nSeconds)
{
    setTime(QTime(0, 0, std::clamp(nSeconds, 0, LastSecond)));
}

int CTimePicker::m_F_n_SecondsPerStep() const
{
    switch (currentSection()) {
    case HourSection:
        return SecondsPerHour;
    case MinuteSection:
        return SecondsPerMinute;
    default:
        return 1;
    }
}

// The arithmetic of the base class would stop each part at its own end.
void CTimePicker::stepBy(int nSteps)
{
    const Section nSection = currentSection();
    const int nLast = sectionCount() > 1 ? LastMinute * SecondsPerMinute + LastSecond : LastSecond;
    const int nSeconds = QTime(0, 0).secsTo(time()) + nSteps * m_F_n_SecondsPerStep();
    if (nSeconds >= 0 && nSeconds <= nLast)
        setTime(QTime(0, 0).addSecs(nSeconds));
    setSelectedSection(nSection);
}

QAbstractSpinBox::StepEnabled CTimePicker::stepEnabled() const
{
    return StepUpEnabled | StepDownEnabled;
}
