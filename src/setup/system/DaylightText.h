#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

/// The texts in which a recorder keeps when daylight saving begins and ends.
namespace nsDaylightText {

/// "month.week.day/hour:minute(date time)". As it stands, and meant to: the week is the day of the month divided by 7,
/// plus 1, so that a 7th is in the second; the day of the week counts from Sunday, minus 1, so that a Sunday is -1.
QString Compose(const QDate& objDate, const QTime& objTime);
/// The date and time in the brackets of such a text; nothing if they are no date and time of this world.
std::optional<QDateTime> Read(const QString& sText);

/// "hour:minute" of an offset, both of two digits.
QString ComposeOffset(const QTime& objOffset);
std::optional<QTime> ReadOffset(const QString& sText);

} // namespace nsDaylightText
