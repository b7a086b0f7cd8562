#include "core/CReplyEnvelope.h"

#include <algorithm>

QString CReplyEnvelope::s_F_s_CutRoot(const QString& sReply)
{
    static constexpr QLatin1StringView s_sBegin("<root>");
    static constexpr QLatin1StringView s_sEnd("</root>");

    const auto nBegin = sReply.indexOf(s_sBegin);
    if (nBegin < 0)
        return sReply;
    // A missing end is position -1, so that the length comes out as 6 less the begin. QString::mid takes a negative
    // length for "all the rest", hence the bound.
    const auto nEnd = sReply.indexOf(s_sEnd, nBegin + s_sBegin.size());
    const auto nLength = nEnd + s_sEnd.size() - nBegin;
    return sReply.mid(nBegin, std::max<qsizetype>(nLength, 0));
}
