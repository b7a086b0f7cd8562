#pragma once

#include <QString>
#include <QTextDocument>

/// A text from outside as a tool tip or label shows it letter by letter, also where it looks like mark-up.
inline QString PlainTip(const QString& sText)
{
    return Qt::mightBeRichText(sText) ? Qt::convertFromPlainText(sText) : sText;
}
