#include "core/CPtzCommand.h"

#include <QtGlobal>
#include <iterator>

namespace {

// {c} is the camera, {1} the first parameter as it stands; {r1} and {r2} are the parameters as rates.
constexpr const char* g_apszUrls[] = {
    "cgi-bin/ptz.cgi?move=upleft&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=up&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=upright&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=left&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=right&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=downleft&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=down&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=downright&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=home&camera={c}&speed={1}",
    nullptr, // 9: the tours' list
    "cgi-bin/ptz.cgi?tournum={1}&tour=on&camera={c}",
    "cgi-bin/ptz.cgi?tournum={1}&tour=off&camera={c}",
    "cgi-bin/ptz.cgi?move=irisup&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=irisdown&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?autoiris=on&camera={c}",
    "cgi-bin/ptz.cgi?move=focusup&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?move=focusdown&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?autofocus=on&camera={c}",
    "cgi-bin/ptz.cgi?rzoom=1&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?rzoom=-1&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?autopan=on&camera={c}&speed={1}",
    "cgi-bin/ptz.cgi?autopan=off&camera={c}&speed={1}",
    nullptr, // 22: the presets' list
    "cgi-bin/ptz.cgi?gotoserverpresetno={1}&camera={c}",
    "cgi-bin/ptz.cgi?continuouspantiltmove={r1}:{r2}&camera={c}&speed=0",
    "cgi-bin/ptz.cgi?continuouspantiltmove=0:0&camera={c}&speed=0",
    "cgi-bin/ptz.cgi?continuouszoommove={r1},0&camera={c}",
};

// Tenths of the full rate, which is 32768 here; the shift wraps around as 32 bits do.
int Rate(int nTenths)
{
    return static_cast<qint32>(static_cast<quint32>(nTenths) << 15) / 10;
}

} // namespace

QByteArray CPtzCommand::s_F_s_Url(int nCmd, int nCamera, int nParam1, int nParam2)
{
    if (nCmd < 0 || nCmd >= static_cast<int>(std::size(g_apszUrls)) || !g_apszUrls[nCmd])
        return {};
    QByteArray sUrl(g_apszUrls[nCmd]);
    sUrl.replace("{c}", QByteArray::number(nCamera));
    sUrl.replace("{1}", QByteArray::number(nParam1));
    sUrl.replace("{r1}", QByteArray::number(Rate(nParam1)));
    sUrl.replace("{r2}", QByteArray::number(Rate(nParam2)));
    return sUrl;
}
