#include "core/CDipsReply.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

bool CDipsReply::s_F_b_Parse(const QByteArray& sReply, QByteArray& sAddress, int& nPort)
{
    static constexpr QByteArrayView s_sScheme("http://");

    const auto nScheme = sReply.indexOf(s_sScheme);
    if (nScheme < 0)
        return false;
    const QByteArray sRest = sReply.mid(nScheme + s_sScheme.size());
    const auto nColon = sRest.lastIndexOf(':');
    if (nColon < 0)
        return false;
    const long long nNumber = std::strtoll(sRest.constData() + nColon + 1, nullptr, 10);
    sAddress = sRest.left(nColon);
    nPort = static_cast<int>(std::clamp<long long>(nNumber, INT_MIN, INT_MAX));
    return true;
}
