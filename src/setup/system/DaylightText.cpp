#include "setup/system/DaylightText.h"

#include <QStringList>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int DaysPerWeek = 7;

/// What stands at a place of a list, as a leading integer.
int Number(const QStringList& arParts, int nPart)
{
    return CXmlObj::s_F_n_ToInt(arParts.value(nPart));
}

} // namespace

QString nsDaylightText::Compose(const QDate& objDate, const QTime& objTime)
{
    const int nWeekday = objDate.dayOfWeek() % DaysPerWeek; // from Sunday
    return QString::asprintf("%d.%d.%d/%02d:%02d(%04d-%02d-%02d %02d:%02d:%02d)", objDate.month(),
                             objDate.day() / DaysPerWeek + 1, nWeekday - 1, objTime.hour(), objTime.minute(),
                             objDate.year(), objDate.month(), objDate.day(), objTime.hour(), objTime.minute(),
                             objTime.second());
}

std::optional<QDateTime> nsDaylightText::Read(const QString& sText)
{
    const QString sPlain = sText.section(u'(', 1, 1);
    const QStringList arDate = sPlain.section(u' ', 0, 0).split(u'-'), arTime = sPlain.section(u' ', 1, 1).split(u':');
    const QDate objDate(Number(arDate, 0), Number(arDate, 1), Number(arDate, 2));
    const QTime objTime(Number(arTime, 0), Number(arTime, 1), Number(arTime, 2));
    if (!objDate.isValid() || !objTime.isValid())
        return {};
    return QDateTime(objDate, objTime, Qt::UTC); // of no time zone: no hour is left out in it
}

QString nsDaylightText::ComposeOffset(const QTime& objOffset)
{
    return QString::asprintf("%02d:%02d", objOffset.hour(), objOffset.minute());
}

std::optional<QTime> nsDaylightText::ReadOffset(const QString& sText)
{
    const QStringList arParts = sText.split(u':');
    const QTime objOffset(Number(arParts, 0), Number(arParts, 1));
    return sText.isEmpty() || !objOffset.isValid() ? std::nullopt : std::optional(objOffset);
}
